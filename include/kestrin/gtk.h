#pragma once

/// What a host application on Linux calls besides: the platform, its options, the widget of a view, and what
/// a program around it needs: its log's writer, the web inspector, the answers about permissions.

#include "linux/LinuxPlatform.h"
#include "linux/permission/PermissionFile.h"
#include "linux/toolkit/LogLines.h"
#include "linux/toolkit/Widget.h"
#include "linux/web/Inspector.h"
