// Basic value types shared by every subsystem.
#pragma once
#include <cstdint>

using dataInteger = std::int32_t;  // signed data value
using adrInteger = std::uint32_t;  // address, ranges are inclusive
using dataPhys = double;           // physical value
using dataFloat = double;
using YesNo = int;  // 0 no, 1 yes
