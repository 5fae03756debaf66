#include "draw/Legend.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "draw/Ink.h"
#include "draw/RoundNumber.h"

namespace vpc::draw {

namespace {

/// The ramp's height in heights of the text, and in heights of the picture at most.
constexpr float rampInTexts = 15.0F;
constexpr float rampInPictures = 0.4F;
/// Room for a label, in heights of the text.
constexpr float labelRoom = 2.2F;
/// From the ramp to its labels, in heights of the text.
constexpr float labelGap = 1.1F;

struct Label {
    double value;
    std::string text;
};

/// Round values in the range, or its only one.
std::vector<Label> labelsFor(const ValueRange& range, int most) {
    const double length = range.max - range.min;
    // No step fits into a range as short as the smallest numbers.
    constexpr double shortest = 1e-300;
    if (!(length > shortest * most) || !std::isfinite(length))
        return {{range.min, shortText(range.min)}};
    const RoundNumber step = RoundNumber::NotBelow(length / most);
    std::vector<Label> labels;
    const double first = std::ceil(range.min / step.Value() - 1e-9);
    for (int i = 0; i <= most; ++i) {
        const double value = (first + i) * step.Value();
        if (value > range.max + 1e-9 * step.Value()) break;
        labels.push_back({value, step.Text(value)});
    }
    return labels;
}

class LegendLayout {
public:
    LegendLayout(const ImageSize& size, const std::string& title, const ValueRange& range,
                 const OverlayStyle& style, float right) {
        const float text = style.textHeight;
        ramp_.width = 1.5F * text;
        ramp_.height = std::round(
            std::min(rampInTexts * text, rampInPictures * static_cast<float>(size.height)));
        labels_ =
            labelsFor(range, std::max(1, static_cast<int>(ramp_.height / (labelRoom * text))));
        float labelWidth = 0.0F;
        for (const Label& label : labels_)
            labelWidth = std::max(labelWidth, Ink::TextWidth(label.text, text));
        const float rampAndLabels = ramp_.width + labelGap * text + labelWidth;
        panel_.width = std::max(rampAndLabels, Ink::TextWidth(title, text)) + 2.0F * style.space;
        panel_.height = text + 1.2F * style.space + ramp_.height + 2.0F * style.space;
        panel_.left = static_cast<float>(size.width) - right - style.space - panel_.width;
        panel_.top = static_cast<float>(size.height) - style.space - panel_.height;
        ramp_.left = std::round(panel_.left + style.space);
        ramp_.top = std::round(panel_.Bottom() - style.space - ramp_.height);
    }

    const Rectangle& Panel() const { return panel_; }
    const Rectangle& Ramp() const { return ramp_; }
    const std::vector<Label>& Labels() const { return labels_; }

private:
    Rectangle panel_;
    Rectangle ramp_;
    std::vector<Label> labels_;
};

/// The share of the ramp above a value.
float shareAbove(const ValueRange& range, double value) {
    const double length = range.max - range.min;
    if (!(length > 0.0) || !std::isfinite(length)) return 0.5F;
    return static_cast<float>((range.max - value) / length);
}

void drawRamp(Image& image, const Rectangle& place, const ColourRamp& ramp) {
    const ValueRange& range = ramp.Range();
    const ImageSize& size = image.Size();
    const int top = std::max(static_cast<int>(place.top), 0);
    const int left = std::max(static_cast<int>(place.left), 0);
    const int bottom = std::min(static_cast<int>(place.Bottom()), size.height);
    const int right = std::min(static_cast<int>(place.Right()), size.width);
    for (int row = top; row < bottom; ++row) {
        const float share = (static_cast<float>(row) + 0.5F - place.top) / place.height;
        const Colour colour =
            ramp.Of(range.max - (range.max - range.min) * static_cast<double>(share));
        for (int column = left; column < right; ++column) image[size.Pixel(column, row)] = colour;
    }
}

}  // namespace

Rectangle drawLegend(Image& image, const ColourRamp& ramp, const std::string& title,
                     const OverlayStyle& style, float right) {
    const LegendLayout layout(image.Size(), title, ramp.Range(), style, right);
    layout.Panel().Cover(image, style.panel);
    const Rectangle& bar = layout.Ramp();
    drawRamp(image, bar, ramp);
    Ink ink;
    const float text = style.textHeight;
    ink.Text(title, bar.left, layout.Panel().top + style.space + text, text, style.lineWidth);
    for (const Label& label : layout.Labels()) {
        const float y = bar.top + bar.height * shareAbove(ramp.Range(), label.value);
        ink.Line(bar.Right(), y, bar.Right() + 0.4F * text, y, style.lineWidth);
        ink.Text(label.text, bar.Right() + labelGap * text, y + text / 2.0F, text, style.lineWidth);
    }
    ink.LayOver(image, style.ink);
    return layout.Panel();
}

}  // namespace vpc::draw
