#pragma once

// Marks exactly the interface the host sees. Everything else is built with hidden
// visibility, so the shared library exports only what carries this macro.
#define NEQBRIDGE_API __attribute__((visibility("default")))

// Keeps a member of an exported class out of the interface. Needed above all for private
// member templates: their instantiations would otherwise be exported wherever the compiler
// happens to emit them rather than inline them, which differs between compilers and levels
// of optimisation.
#define NEQBRIDGE_HIDDEN __attribute__((visibility("hidden")))
