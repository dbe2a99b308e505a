// What the studio's views include beyond widgets: the application model, which reaches the whole document.
#pragma once
#include "Velmora/Model/AppModel.h"
#include "precompiled/Widgets.h"
