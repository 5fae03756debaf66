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
class OD_EXPORT GiPointSetDefinition {
public:
    virtual ~GiPointSetDefinition();

    /// The unit of the points' coordinates, as the host numbered it when the file was prepared.
    virtual OdUInt32 getPointModelUnit() const = 0;

    /// Whether a view differs from the one of the last updateVisiblePoints.
    ///
    /// \param matrix         from the points' frame into the drawing
    /// \param camera, target in the drawing
    /// \param viewVector     the camera's up direction
    /// \param fieldWidth, fieldHeight what the view shows at the target, in drawing units
    /// \param viewportWidth, viewportHeight in pixels
    virtual bool hasViewGeometryChanged(const OdGeMatrix3d& matrix, const OdGePoint3d& camera,
                                        const OdGePoint3d& target, const OdGeVector3d& viewVector,
                                        double fieldWidth, double fieldHeight, int viewportWidth,
                                        int viewportHeight, bool perspective) = 0;
    /// Chooses and reads the points for a view. Returns how many there are now.
    virtual unsigned long long updateVisiblePoints(
        const OdGeMatrix3d& matrix, const OdGePoint3d& camera, const OdGePoint3d& target,
        const OdGeVector3d& viewVector, double fieldWidth, double fieldHeight, int viewportWidth,
        int viewportHeight, bool perspective) = 0;
    /// Appends the point near `pickPoint`, if there is one, to `snapPoints`.
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
    virtual bool useFlatView() const = 0;
    virtual void setUseFlatView(bool flat) = 0;
    virtual unsigned long long maxNrPointsInBuffer() const = 0;
    virtual void setMaxNrPointsInBuffer(unsigned long long count) = 0;
    virtual GiPcStylizationType stylizationType() const = 0;
    virtual void setStylizationType(GiPcStylizationType type) = 0;
    virtual GiPcColorScheme colorScheme() const = 0;
    virtual void setColorScheme(GiPcColorScheme scheme) = 0;

    virtual bool hasSameSections(
        const std::vector<std::pair<OdGePoint3d, OdGeVector3d>>& sections) = 0;
    virtual bool addSection(const OdString& name, const OdGePoint3d& point,
                            const OdGeVector3d& normal, bool flag) = 0;
    virtual bool clearSections(bool flag) = 0;

    virtual bool addClipping(const GiPcClipConfig& config) = 0;
    virtual bool removeLastClipping() = 0;
    virtual bool clearClippings() = 0;

protected:
    GiPointSetDefinition() = default;
    GiPointSetDefinition(const GiPointSetDefinition&) = default;
    GiPointSetDefinition& operator=(const GiPointSetDefinition&) = default;
};
