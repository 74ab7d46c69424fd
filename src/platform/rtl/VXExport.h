#pragma once
// What the vxsvg shared libraries show to the programs that use them. The libraries are built with
// hidden symbols, so only the classes, functions and tables marked VX_EXPORT are in their dynamic
// symbol tables; inline code and the helpers of each source file stay inside.
#define VX_EXPORT __attribute__((visibility("default")))
