// Numbers as text for the scoring command: the library's host forms, written in the shortest form that
// reads back to the same double and read back strictly.
#pragma once

#include "vantry/host/NumberForms.h"

namespace vantry_tool {

using vantry::ReadNumber;
using vantry::ShortestNumber;

}  // namespace vantry_tool
