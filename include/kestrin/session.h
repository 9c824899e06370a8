#pragma once

/// Sources of world tracking for `gtk::Options::worldTracking`: simulated rooms and recordings.

#include "session/recording/Sources.h"
