#pragma once

#include <array>

#include "viewer/camera/Box.h"
#include "viewer/camera/ViewCamera.h"

namespace vpc::viewer {

enum class StandardView { Top, Bottom, Front, Back, Left, Right, Isometric };

constexpr std::array<StandardView, 7> standardViews{
    StandardView::Top,  StandardView::Bottom, StandardView::Front,    StandardView::Back,
    StandardView::Left, StandardView::Right,  StandardView::Isometric};

/// As people call it: "Top".
const char* nameOf(StandardView view);

/// The same direction, with all of a box in the picture; the target is the box's centre. The camera
/// itself where the box is empty or its numbers cannot be looked at.
ViewCamera fit(const ViewCamera& camera, const Box& box, const draw::ImageSize& size);

/// A parallel view whose eye is moved back until a box lies ahead of it, which shows the same but
/// for what lay behind the eye. Other cameras come back as they are.
ViewCamera clearOf(const ViewCamera& camera, const Box& box);

/// A box seen from a side: Front looks north (along y), Left looks east (along x), Top looks down
/// with north above, Isometric looks down from the south-east. An empty box is taken for one of
/// length 1 around the origin.
ViewCamera standardView(StandardView view, const Box& box, const draw::ImageSize& size,
                        bool perspective);

}  // namespace vpc::viewer
