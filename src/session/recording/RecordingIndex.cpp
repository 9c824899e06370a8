#include "session/recording/RecordingIndex.h"

#include "session/Field.h"
#include "session/recording/LineReader.h"

#include <utility>

namespace kestrin::session {

RecordingIndex readIndex(std::string_view text) {
    RecordingIndex index;
    LineReader reader;
    std::size_t number = 0;
    bool isWhole = true;
    try {
        do {
            ++number;
            const std::size_t length = text.find('\n');
            isWhole = length != std::string_view::npos;
            const std::string_view line = text.substr(0, length);
            text.remove_prefix(isWhole ? length + 1 : text.size());
            if (number == 1)
                index.info = reader.readHeader(line);
            else if (auto frame = reader.readFrame(line))
                index.frames.push_back(std::move(*frame));
        } while (!text.empty());
    } catch (const FieldError& error) {
        if (isWhole || number == 1)
            index.fault = {number, error.what()};
    }
    index.isFinished = reader.isFinished() && !index.fault;
    return index;
}

} // namespace kestrin::session
