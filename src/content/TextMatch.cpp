#include "content/TextMatch.h"

#include "content/GPointer.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace kestrin::content {
namespace {

constexpr std::size_t kLettersForAnError = 5;
constexpr std::size_t kTooMany = 1000; // errors

bool isDigit(char32_t c) { return g_unichar_isdigit(c); }

/// Whether a digit and a letter have one shape.
bool isAlike(char32_t digit, char32_t letter) {
    constexpr std::array<std::u32string_view, 10> kShapes{U"o", U"il", U"z", U"",  U"a",
                                                          U"s", U"bg", U"t", U"b", U"gq"};
    return digit - U'0' < kShapes.size() && kShapes[digit - U'0'].find(letter) != std::u32string_view::npos;
}

std::size_t changing(char32_t from, char32_t to) {
    if (from == to)
        return 0;
    const bool isRight = isDigit(from) ? isAlike(from, to) : !isDigit(to) || isAlike(to, from);
    return isRight ? 1 : kTooMany;
}

std::size_t dropping(char32_t c) { return isDigit(c) ? kTooMany : 1; }

/// The fewest errors by which a text became a run of the words; found letter by letter of the words, with the
/// errors of each beginning of the text up to there.
std::size_t errorsIn(const std::vector<std::u32string>& words, const std::u32string& text) {
    std::vector<std::size_t> errors(text.size() + 1);
    for (std::size_t i = 0; i < text.size(); ++i)
        errors[i + 1] = errors[i] + dropping(text[i]);
    std::size_t fewest = kTooMany;
    for (const std::u32string& word : words) {
        errors[0] = 0; // it may begin here
        for (const char32_t letter : word) {
            std::size_t before = std::exchange(errors[0], errors[0] + dropping(letter));
            for (std::size_t i = 0; i < text.size(); ++i) {
                const std::size_t least =
                    std::min({before + changing(text[i], letter), errors[i] + dropping(text[i]),
                              errors[i + 1] + dropping(letter)});
                before = std::exchange(errors[i + 1], least);
            }
        }
        fewest = std::min(fewest, errors.back());
    }
    return fewest;
}

} // namespace

std::vector<std::u32string> plainWords(const std::string& text) {
    const GText decomposed(g_utf8_normalize(text.data(), static_cast<gssize>(text.size()), G_NORMALIZE_ALL));
    const GText plain(decomposed ? g_utf8_casefold(decomposed.get(), -1) : nullptr);
    std::vector<std::u32string> words(1);
    for (const char* at = plain.get(); at && *at; at = g_utf8_next_char(at)) {
        const gunichar c = g_utf8_get_char(at);
        if (g_unichar_isalnum(c))
            words.back() += static_cast<char32_t>(c);
        else if (!g_unichar_ismark(c) && !words.back().empty())
            words.emplace_back();
    }
    if (words.back().empty())
        words.pop_back();
    return words;
}

const PrintedText* nearestText(const std::vector<PrintedText>& texts, const std::string& read) {
    const std::vector<std::u32string> words = plainWords(read);
    const PrintedText* nearest = nullptr;
    std::size_t errors = 0, length = 1;
    for (const PrintedText& candidate : texts) {
        std::u32string text;
        for (const std::u32string& word : plainWords(candidate.text))
            text += word;
        const std::size_t wrong = text.empty() ? kTooMany : errorsIn(words, text);
        if (wrong > text.size() / kLettersForAnError)
            continue;
        const std::size_t here = wrong * length,
                          best = errors * text.size(); // the shares, over a common length
        if (nearest && (here > best || (here == best && text.size() <= length)))
            continue;
        nearest = &candidate;
        errors = wrong;
        length = text.size();
    }
    return nearest;
}

} // namespace kestrin::content
