// The direction from which a plan shows a model.
#pragma once

#include <optional>
#include <string_view>

#include "app/model/affine.h"

namespace dxf2d {

// The turn that lays a view on the sheet: the model stands with z up before it; after it x runs to
// the right of the sheet, y up the sheet and z towards the viewer. `text` is one of
//
//   top     from above, x to the right and y up the sheet (the identity)
//   bottom  from below, x to the right and y down the sheet
//   front   from -y, looking along +y: x to the right, z up the sheet
//   back    from +y: -x to the right        left   from -x: -y to the right
//   right   from +x: y to the right         iso    45,35.264389682754654
//
// or "AZIMUTH,ELEVATION" in degrees: the viewer stands at -y for azimuth 0 and goes
// counter-clockwise seen from above (90 is right, 180 back), ELEVATION above the horizon, -90 to 90
// (90 is top). Turns by right angles are exact. Names in any letter case, blanks around each part.
// Empty for any other text.
std::optional<Affine> parseView(std::string_view text);

}  // namespace dxf2d
