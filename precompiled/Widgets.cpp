// Carries the precompiled Widgets.h.
