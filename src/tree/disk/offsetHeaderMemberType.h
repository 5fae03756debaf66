#pragma once

/// The members of a node record, in file order; the values are part of the interface.
enum offsetHeaderMemberType : int {
    OffsetHeaderLevel = 0,              ///< the node's level
    OffsetHeaderMinimumDistance = 1,    ///< point spacing of the node's level
    OffsetHeaderIndexPath = 2,          ///< child triplet of every step from the root
    OffsetHeaderGridPath = 3,           ///< children-per-axis triplet of every step
    OffsetHeaderBoxMinimum = 4,         ///< three doubles
    OffsetHeaderBoxMaximum = 5,         ///< three doubles
    OffsetHeaderPointCount = 6,         ///< points of the node
    OffsetHeaderChildrenX = 7,          ///< children per axis
    OffsetHeaderChildrenY = 8,          ///< children per axis
    OffsetHeaderChildrenZ = 9,          ///< children per axis
    OffsetHeaderCellWidths = 10,        ///< cell widths, one for every cell along an axis
    OffsetHeaderRecordPosition = 11,    ///< where this record stands
    OffsetHeaderPointBlock = 12,        ///< where the node's point block stands
    OffsetHeaderPointList = 13,         ///< where the node's first point stands
    OffsetHeaderParentRecord = 14,      ///< where the parent's record stands; 0 for the root
    OffsetHeaderParentPointBlock = 15,  ///< where the parent's point block stands; 0 for the root
    OffsetHeaderChildEntries = 16       ///< two positions for every child
};
