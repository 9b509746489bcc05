#pragma once

// Marks exactly the interface the host sees. Everything else is built with hidden
// visibility, so the shared library exports only what carries this macro.
#define NEQBRIDGE_API __attribute__((visibility("default")))
