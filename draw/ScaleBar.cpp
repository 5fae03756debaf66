#include "draw/ScaleBar.h"

#include <algorithm>
#include <cmath>

#include "draw/Ink.h"
#include "draw/RoundNumber.h"

namespace vpc::draw {

namespace {

/// The bar's length in widths of the picture at most.
constexpr double longestBar = 0.2;

}  // namespace

void drawScaleBar(Image& image, const Projection& projection, const std::string& unit,
                  const OverlayStyle& style) {
    const double widest = longestBar * image.Size().width / projection.Scale();
    if (!(widest > 0.0) || !std::isfinite(widest)) return;
    const RoundNumber length = RoundNumber::NotAbove(widest);
    std::string label = length.Text(length.Value());
    if (!unit.empty()) label += " " + unit;
    if (projection.GetCamera().perspective) label += " at the target";

    const float text = style.textHeight;
    const auto bar = static_cast<float>(length.Value() * projection.Scale());
    const float labelWidth = Ink::TextWidth(label, text);
    Rectangle panel;
    panel.width = std::max(bar, labelWidth) + 2.0F * style.space;
    panel.height = 2.2F * text + 2.0F * style.space;
    panel.left = style.space;
    panel.top = static_cast<float>(image.Size().height) - style.space - panel.height;
    panel.Cover(image, style.panel);

    Ink ink;
    const float left = panel.left + (panel.width - bar) / 2.0F;
    const float foot = panel.Bottom() - style.space;
    ink.Text(label, panel.left + (panel.width - labelWidth) / 2.0F, panel.top + style.space + text,
             text, style.lineWidth);
    ink.Line(left, foot, left + bar, foot, style.lineWidth);
    for (const float end : {left, left + bar})
        ink.Line(end, foot - 0.5F * text, end, foot, style.lineWidth);
    ink.LayOver(image, style.ink);
}

}  // namespace vpc::draw
