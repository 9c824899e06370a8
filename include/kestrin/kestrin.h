#pragma once

/// What a host application calls, whatever the toolkit: the view and what it is set up with.

#include "bridge/KestrinAppBridge.h"
#include "bridge/KestrinWebEvent.h"
#include "core/KestrinCVSession.h"
#include "core/KestrinNavigator.h"
#include "core/KestrinView.h"
#include "core/config/Deployment.h"
#include "core/config/KestrinSettings.h"
#include "services/ConnectionChecker.h"
