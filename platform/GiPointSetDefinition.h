#pragma once

#include <utility>
#include <vector>

#include "platform/GiPcClipConfig.h"
#include "platform/GiPcColorScheme.h"
#include "platform/GiPcDrawDensity.h"
#include "platform/GiPcStylizationType.h"
#include "platform/OdArray.h"
#include "platform/OdCmEntityColor.h"
#include "platform/OdGeMatrix3d.h"
#include "platform/OdGePoint3d.h"
#include "platform/OdGeVector3d.h"
#include "platform/OdPlatform.h"
#include "platform/OdString.h"

/// What the host's point-cloud module draws. The host relies on the order of the operations: it is
/// their order in the virtual table.
///
/// One thread at a time, for all point sets together: neither of two may be updated or picked in
/// while the other is.
class OD_EXPORT GiPointSetDefinition {
public:
    virtual ~GiPointSetDefinition();

    /// The unit of the points' coordinates, as the host numbered it when the file was prepared.
    virtual OdUInt32 getPointModelUnit() const = 0;

    /// Whether a view differs from the one of the last updateVisiblePoints. Neither the matrix nor
    /// the viewport counts, nor do settings; and a component of camera, target or up direction that
    /// was 0 at the last update counts as changed at every call. (So does the usual up of 0, 0, 1.)
    ///
    /// \param matrix         from the points' frame into the drawing
    /// \param camera, target in the drawing
    /// \param viewVector     the camera's up direction, of any length; square to the direction of
    ///                       view, or the volume in view becomes narrower and slanted
    /// \param fieldWidth, fieldHeight what the view shows at the target, in drawing units
    /// \param viewportWidth, viewportHeight in pixels
    virtual bool hasViewGeometryChanged(const OdGeMatrix3d& matrix, const OdGePoint3d& camera,
                                        const OdGePoint3d& target, const OdGeVector3d& viewVector,
                                        double fieldWidth, double fieldHeight, int viewportWidth,
                                        int viewportHeight, bool perspective) = 0;
    /// Chooses and reads the points for a view, on the calling thread and without pause. Returns
    /// how many there are now. The arguments are those of hasViewGeometryChanged.
    ///
    /// Nodes of the cloud are left out that lie, along the view, further from the camera than three
    /// times the distance from the camera, in the drawing, to the centre of the cloud in its own
    /// frame, which the matrix has not moved.
    virtual unsigned long long updateVisiblePoints(
        const OdGeMatrix3d& matrix, const OdGePoint3d& camera, const OdGePoint3d& target,
        const OdGeVector3d& viewVector, double fieldWidth, double fieldHeight, int viewportWidth,
        int viewportHeight, bool perspective) = 0;
    /// Appends to `snapPoints` a point that the last update shows, as it stands in the array, in a
    /// box of 5 by 5 pixels around `pickPoint`; nothing where there is none. The view is that of
    /// the last update.
    ///
    /// Picks sort by the distance from one camera that is global to the process: no two of them may
    /// run at once, in whatever point sets.
    ///
    /// \param pickPoint    in the drawing, anywhere on the user's line of sight
    /// \param second       not used
    /// \param matrix       that of the last update
    /// \param secondMatrix not used
    virtual void getOsnapPoints(const OdGePoint3d& pickPoint, const OdGePoint3d& second,
                                const OdGeMatrix3d& matrix, const OdGeMatrix3d& secondMatrix,
                                OdArray<OdGePoint3d>& snapPoints) = 0;

    /// How many points are in the three arrays below.
    virtual unsigned long long getNrVisiblePoints() const = 0;
    /// The points in the drawing. This array and the next two are null when nothing is loaded. They
    /// belong to the point set and are valid until it changes.
    virtual const OdGePoint3d* getPointCoordinates() const = 0;
    virtual const OdCmEntityColor* getPointColors() const = 0;
    /// The points' sizes in pixels.
    virtual const double* getPointSizes() const = 0;
    /// How many points the file holds.
    virtual unsigned long long getTotalNrPoints() const = 0;

    virtual GiPcDrawDensity drawDensity() const = 0;
    virtual void setDrawDensity(GiPcDrawDensity density) = 0;
    /// Whether the last update showed one level throughout: true after the first update.
    virtual bool useFlatView() const = 0;
    /// Without effect: every update shows one level throughout, whatever was set before.
    virtual void setUseFlatView(bool flat) = 0;
    /// The points that the arrays were last asked to hold; they have fewer slots where memory was
    /// short.
    virtual unsigned long long maxNrPointsInBuffer() const = 0;
    /// Empties the arrays, which become others of `count` slots; 50 and fewer change nothing, and
    /// neither does the number that is there. It holds until the next update, which asks for
    /// POINTCLOUDPOINTMAX: set that variable instead.
    virtual void setMaxNrPointsInBuffer(unsigned long long count) = 0;
    virtual GiPcStylizationType stylizationType() const = 0;
    virtual void setStylizationType(GiPcStylizationType type) = 0;
    virtual GiPcColorScheme colorScheme() const = 0;
    virtual void setColorScheme(GiPcColorScheme scheme) = 0;

    /// Whether the sections are these, in this order. In each pair the point holds the plane's
    /// normal and the vector a point of the plane.
    virtual bool hasSameSections(
        const std::vector<std::pair<OdGePoint3d, OdGeVector3d>>& sections) = 0;
    /// From the next update on, cuts off what lies on the side of a plane that its normal points
    /// away from. Switches all sections on.
    ///
    /// \param name          kept with the section; need not be another one's
    /// \param point, normal in the drawing
    /// \param flag          not used
    virtual bool addSection(const OdString& name, const OdGePoint3d& point,
                            const OdGeVector3d& normal, bool flag) = 0;
    /// Removes all sections. The flag is not used.
    virtual bool clearSections(bool flag) = 0;

    // Clippings are in the points' own frame, which the matrix does not move.

    virtual bool addClipping(const GiPcClipConfig& config) = 0;
    virtual bool removeLastClipping() = 0;
    virtual bool clearClippings() = 0;

protected:
    GiPointSetDefinition() = default;
    GiPointSetDefinition(const GiPointSetDefinition&) = default;
    GiPointSetDefinition& operator=(const GiPointSetDefinition&) = default;
};
