#pragma once

#include <wx/string.h>

#include "host/VpcExport.h"
#include "host/VpcViewFacts.h"
#include "platform/GiPcColorScheme.h"
#include "platform/GiPointSetDefinition.h"
#include "platform/OdOPMClientExtension.h"
#include "platform/OdPlatform.h"
#include "platform/OdString.h"
#include "platform/PcDbPointCloudDefPE.h"
#include "platform/TreePreparePars.h"
#include "tree/construct/PrepareObserver.h"
#include "tree/construct/TreePrepareResult.h"

// What the plug-in exports under plain names. None of these functions throws, and all of them, like
// the objects behind them, are for one thread at a time: whatever thread calls one of them, no
// other may be in the plug-in meanwhile.

/// A host that has loaded the plug-in begins here. Returns a new extension, which the caller
/// deletes before it unloads the plug-in; null when memory is short.
extern "C" VPC_EXPORT PcDbPointCloudDefPE* vpcCreatePointCloudExtension();

/// Returns a new extension of the property palette. The host's extension manager knows it until the
/// caller deletes it. Ownership and null are as above.
extern "C" VPC_EXPORT OdOPMClientExtension* vpcCreatePropertiesExtension();

/// Calls PcCorePointSet::preparePointData and returns whether it succeeded. When memory is short it
/// returns false; `result` says so where there is memory for that.
extern "C" VPC_EXPORT bool vpcPreparePointData(const TreePreparePars& pars,
                                               TreePrepareResult& result);

/// The same, watched by `observer`: it is told how far the run is and what the scans hold, and can
/// end the run.
extern "C" VPC_EXPORT bool vpcPreparePointDataObserved(const TreePreparePars& pars,
                                                       PrepareObserver& observer,
                                                       TreePrepareResult& result);

/// Loads a point set as loadProject of the extension does, and tells what goes wrong. Returns null
/// where the file is missing, damaged or of another version, or memory is short; `problem` is then
/// a translated sentence that names the file, and empty otherwise. The caller owns the point set
/// until it hands it to cleanPointSet of the extension.
///
/// \param fileName      used as it is when it is empty or begins with "/"
/// \param referencePath a file; relative names are looked for in its folder
extern "C" VPC_EXPORT GiPointSetDefinition* vpcLoadPointSet(const OdString& fileName,
                                                            const OdString& referencePath,
                                                            wxString& problem);

/// What the last update of `set` did, and what its arrays do not tell: whether points are missing,
/// whether the budget was refused, the bounds, the range of the colour ramp. Takes no time to speak
/// of. Returns false, with `facts` as they were, for a set that is not the plug-in's or has nothing
/// loaded.
extern "C" VPC_EXPORT bool vpcGetViewFacts(const GiPointSetDefinition& set, vpc::ViewFacts& facts);

/// The colour of a ramp as 0xRRGGBB, exactly as updates colour with it: `share` is 0 for
/// ViewFacts::valueMin and 1 for valueMax, and what lies beyond takes the end's colour. 0 for
/// GiPc_ColorScheme_ScanColors, which has no ramp.
extern "C" VPC_EXPORT OdUInt32 vpcGetSchemeColour(GiPcColorScheme scheme, double share);

/// Starts the log, which says why files are not loaded: lines of time and text in UTF-8, each on
/// the disk at once. An older file of that name is overwritten. Returns false when the file cannot
/// be written or a log is open. There is one log for the whole process.
extern "C" VPC_EXPORT bool vpcOpenLog(const wxString& file);

/// Ends the log with a line that says how long it was open. Does nothing when none is open.
extern "C" VPC_EXPORT void vpcCloseLog();

/// Writes what the last update worked with into `folder`, which must exist: the camera
/// (CameraParameters.txt), the box around the points (DataBoundaries.ply), the volume in view
/// (CameraViewFrustum.ply) and the boxes of the nodes shown (InViewFrustum.ply). Older files are
/// overwritten. Returns false when one of them cannot be written; and, having written nothing, for
/// a set that is not the plug-in's and for one whose last update showed no part of space.
extern "C" VPC_EXPORT bool vpcExportView(const GiPointSetDefinition& set, const wxString& folder);

/// The same for the last pick (getOsnapPoints): PickPointParameters.txt, PickPointFrustum.ply and,
/// with the boxes of the nodes that were searched, InPickFrustum.ply. Call it before the next
/// update, which forgets those nodes.
extern "C" VPC_EXPORT bool vpcExportPick(const GiPointSetDefinition& set, const wxString& folder);
