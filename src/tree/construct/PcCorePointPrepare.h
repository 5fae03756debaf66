#pragma once

#include <vector>

#include <wx/string.h>

#include "core/util/VpcDefinitions.h"
#include "tree/construct/PrepareObserver.h"
#include "tree/construct/TreePrepareResult.h"

/// Turns scan files into one point tree file: the only way into tree construction.
class PcCorePointPrepare {
public:
    /// Bytes of points that a run keeps in memory unless it is told otherwise: 128 MiB.
    static constexpr unsigned long long defaultPointMemory = 128ULL << 20;

    /// Reads `inputFiles` (full paths, all of the first one's format, which its extension tells)
    /// and writes the point tree file `outputFile`, which appears only when it is whole.
    ///
    /// \param headerValue      stored in the file's header untouched; hosts keep the unit there
    /// \param workingFolder    where temporary files go; ends with a separator
    /// \param treeType         Tree_Octree or Tree_KdTree_Symmetric
    /// \param maxPointsPerNode points at which a leaf is split
    /// \param maxLevel         deepest level that a split may reach; there, leaves grow. Where many
    ///                         points coincide all these levels are built, and every node takes a
    ///                         record: more than about 60 levels only cost memory and time
    ///
    /// Every failure comes back as a result whose message says why; nothing is thrown but
    /// std::bad_alloc. Uses the process-wide timer: one run at a time.
    ///
    /// vpc::PrepareChecks finds out before a run what would make it fail. It is not part of the
    /// run, whose own rules are milder: a text scan that cannot be opened is left out, with a note.
    [[nodiscard]] static TreePrepareResult preparePointData(
        unsigned long long headerValue, const wxString& workingFolder,
        const std::vector<wxString>& inputFiles, wxString outputFile, VpcTreeType treeType,
        unsigned long long maxPointsPerNode, unsigned long long maxLevel);

    /// The same, watched by `observer`, which can stop the run.
    ///
    /// \param pointMemory bytes of points to keep in memory, packed; those that find no room there
    ///                    wait in a temporary file. More makes a run faster or changes nothing, and
    ///                    the result is the same. A run takes some 30 MB, 500 bytes for every node
    ///                    and, while it sorts what memory kept back, up to half of pointMemory
    ///                    beyond it. 0 keeps a file for every node, which is several times slower
    [[nodiscard]] static TreePrepareResult preparePointData(
        unsigned long long headerValue, const wxString& workingFolder,
        const std::vector<wxString>& inputFiles, wxString outputFile, VpcTreeType treeType,
        unsigned long long maxPointsPerNode, unsigned long long maxLevel, PrepareObserver& observer,
        unsigned long long pointMemory = defaultPointMemory);
};
