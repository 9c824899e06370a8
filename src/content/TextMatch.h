#pragma once

#include "content/Application.h"

#include <string>
#include <vector>

namespace kestrin::content {

/// The words of a text by their letters and digits alone, without case and accents. Empty when it has none,
/// or is not UTF-8. Thread: any.
std::vector<std::u32string> plainWords(const std::string& text);

/// The text that is nearest to a run of whole words of what was read off a picture, wherever its spaces are.
/// One letter in five may be wrong; a digit may have been read as a letter of its shape, but as nothing else.
/// Of equals the longest; null when none is near enough. Thread: any.
const PrintedText* nearestText(const std::vector<PrintedText>& texts, const std::string& read);

} // namespace kestrin::content
