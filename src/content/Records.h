#pragma once

#include "content/Application.h"

#include <optional>
#include <string>

namespace kestrin::content {

/// The server's answers and the key string, as compact JSON text. Thread: any.

/// {"data":{"id":…,"type":"application","attributes":{"title":…,"feature_flags":"[…]"}}}: the flags are a
/// text that holds a JSON array.
std::string applicationRecord(const Application& application);

/// {"data":{"appkey":…}}
std::string applicationKeyRecord(const std::string& keyString);

/// {"data":[{"id":…,"type":"trigger","attributes":{"scene_id":…,"file_id":…,"width":…,"height":…}},…],
/// "included":[{"id":…,"type":"file","attributes":{"effective_uri":…}},…]}: the sizes in millimetres, absent
/// when they are not known; the pictures below `pictures`, an address that ends with a slash.
std::string triggerBundle(const Application& application, const std::string& pictures);

/// {"data":[{"id":…,"type":…,"attributes":{"title":…}},…]} of the entries that have the title, or of all.
std::string entryRecords(const std::vector<Entry>& entries, const std::string& type,
                         const std::optional<std::string>& title);

/// {"errors":[{"status":"404","title":…,"detail":…}]}. A detail that is not UTF-8 is repaired.
std::string errorRecord(unsigned status, const std::string& detail);

/// base64 of {"baseUrl":…,"baseCommand":…,"debugEnabled":true}; the base command is base64 in turn, of one
/// "sdkloadapplication" command with the application's id and theme.
std::string keyString(const Application& application, const std::string& templateUrl);

} // namespace kestrin::content
