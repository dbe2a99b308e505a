// Carries the precompiled Studio.h.
