#pragma once
// Enumerations of the surface's rendering and transform members.
#include <cstdint>

namespace mx::image {

// The grey conversions: each output channel is the weighted sum of blue, green and red. Any
// value outside -1..7 takes the NTSCPAL weights.
enum ENUM_GRAY_SCALE_FORMULAS : int32_t {
  gsclNone = -1,
  gsclNTSCPAL = 0,
  gsclCCIR709 = 1,
  gsclSimpleAvg = 2,
  gsclRedMask = 3,
  gsclGreenMask = 4,
  gsclBlueMask = 5,
  gsclRedGreenMask = 6,
  gsclBlueGreenMask = 7,
};

// What the controls expose; a control passes its value minus 1 as the formula.
enum ENUM_GRAY_SCALES : int32_t {
  gsNoGrayScale = 0,
  gsNTSCPAL = 1,
  gsCCIR709 = 2,
  gsSimpleAvg = 3,
  gsRedMask = 4,
  gsGreenMask = 5,
  gsBlueMask = 6,
  gsRedGreenMask = 7,
  gsBlueGreenMask = 8,
};

enum ENUM_SCALE_OPTIONS : int32_t {
  scaleToSize = 0,
  scaleDownAsNeeded = 1,
  scaleStretched = 2,
};

enum ENUM_SCALE_METHOD : int32_t {
  smScaled = 0,
  smStretch = 1,
  smScaleDownOnly = 2,
  smActualSize = 3,
  smLockScale = 4,
};

enum ENUM_TRIM_OPTIONS : int32_t {
  trimAll = 0,
  trimLeft = 1,
  trimTop = 2,
  trimRight = 4,
  trimBottom = 8,
};

enum ENUM_MIRROR : int32_t {
  mirrorNone = 0,
  mirrorHorizontal = 1,
  mirrorVertical = 2,
  mirrorAll = 3,
};

enum ENUM_MASK_SOURCE : int32_t {
  maskNone = 0,
  maskUseMaskColor = 1,
  maskUseTopLeft = 2,
  maskUseTopRight = 3,
  maskUseBottomLeft = 4,
  maskUseBottomRight = 5,
};

enum ENUM_REGION_STYLES : int32_t {
  regionBounds = 0,
  regionEnclosed = 1,
  regionShaped = 2,
};

}  // namespace mx::image
