#pragma once

/// The content server, for a host that brings its content along.

#include "content/ContentServer.h"
