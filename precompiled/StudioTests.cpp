// Carries the precompiled StudioTests.h.
