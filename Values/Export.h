// Marks what leaves the shared library; everything else is hidden.
#pragma once

#define HLV_EXPORT __attribute__((visibility("default")))
