#pragma once

/// What a host application on Linux calls besides: the platform, its options, and the widget of a view.

#include "linux/LinuxPlatform.h"
#include "linux/toolkit/Widget.h"
