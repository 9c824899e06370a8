#pragma once

#include "content/Application.h"

#include <string>

namespace kestrin::content {

/// The server's answers and the key string, as compact JSON text. Thread: any.

/// {"data":{"id":…,"type":"application","attributes":{"title":…,"feature_flags":"[…]"}}}: the flags are a
/// text that holds a JSON array.
std::string applicationRecord(const Application& application);

/// {"data":{"appkey":…}}
std::string applicationKeyRecord(const std::string& keyString);

/// {"errors":[{"status":"404","title":…,"detail":…}]}. A detail that is not UTF-8 is repaired.
std::string errorRecord(unsigned status, const std::string& detail);

/// base64 of {"baseUrl":…,"baseCommand":…,"debugEnabled":true}; the base command is base64 in turn, of one
/// "sdkloadapplication" command with the application's id and theme.
std::string keyString(const Application& application, const std::string& templateUrl);

} // namespace kestrin::content
