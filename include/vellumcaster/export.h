#pragma once

/// Marks what the shared library shows; all else in it is hidden.
#define VELLUM_API [[gnu::visibility("default")]]
