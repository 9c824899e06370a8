#include "content/ApplicationFile.h"

#include "content/Field.h"
#include "content/OpenFile.h"
#include "content/TextMatch.h"

#include <boost/json.hpp>
#include <gio/gio.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>

namespace kestrin::content {
namespace {

namespace fs = std::filesystem;
namespace json = boost::json;

constexpr std::uintmax_t kLargest = 4 << 20;
constexpr std::size_t kLongestText = 200; // bytes

json::value parse(const fs::path& file) {
    std::error_code missing;
    const std::uintmax_t size = fs::file_size(file, missing);
    std::ifstream stream(file, std::ios::binary);
    if (missing || !stream)
        throw FieldError("cannot be read");
    if (size > kLargest)
        throw FieldError("is longer than 4 MB");
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    json::error_code wrong;
    json::stream_parser parser;
    const std::size_t read = parser.write_some(text, wrong);
    if (!wrong && read == text.size())
        parser.finish(wrong);
    if (wrong || read != text.size()) {
        const auto line =
            1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(read), '\n');
        throw FieldError("line " + std::to_string(line) + ": is not JSON");
    }
    return parser.release();
}

std::string idIn(const Field& field, std::set<std::string>& taken) {
    const std::string id = field.text();
    const bool isPlain = id.size() <= 64 && std::all_of(id.begin(), id.end(), [](char c) {
                             return g_ascii_isalnum(c) || c == '-' || c == '_';
                         });
    if (!isPlain)
        field.refuse("expected at most 64 letters, digits, hyphens and underscores");
    if (!taken.insert(id).second)
        field.refuse("\"" + id + "\" is there twice");
    return id;
}

/// The canonical place that a field names in the folder, so that nothing outside is ever served.
fs::path placeIn(const fs::path& folder, const Field& field) {
    const std::string name = field.text();
    std::error_code missing;
    const fs::path place = fs::canonical(folder / name, missing);
    if (missing)
        field.refuse("there is no \"" + name + "\"");
    if (!liesBelow(folder, place))
        field.refuse("\"" + name + "\" is not inside the folder");
    return place;
}

std::vector<Entry> entriesIn(const Field& list, std::set<std::string>& ids) {
    std::vector<Entry> entries;
    list.eachItem([&](const Field& item) {
        item.allowOnly({"id", "title"});
        entries.push_back({idIn(item.member("id"), ids), item.member("title").text()});
    });
    return entries;
}

/// Reads the triggers and texts of an application whose scenes are read.
class Recognised {
  public:
    explicit Recognised(Application& application) : m_application(application) {}

    void readTrigger(const Field& item) {
        item.allowOnly({"id", "scene", "picture", "width", "height"});
        Trigger trigger;
        trigger.id = idIn(item.member("id"), m_ids);
        trigger.scene = sceneIn(item.member("scene"));
        trigger.picture = pictureIn(item.member("picture"));
        if (item.has("width"))
            trigger.width = item.member("width").positiveNumber();
        if (item.has("height"))
            trigger.height = item.member("height").positiveNumber();
        m_application.triggers.push_back(std::move(trigger));
    }

    void readText(const Field& item) {
        item.allowOnly({"id", "scene", "text"});
        const Field text = item.member("text");
        if (plainWords(text.text()).empty() || text.text().size() > kLongestText)
            text.refuse("expected letters or digits, at most " + std::to_string(kLongestText) + " bytes");
        m_application.texts.push_back(
            {idIn(item.member("id"), m_ids), sceneIn(item.member("scene")), text.text()});
    }

  private:
    std::string sceneIn(const Field& field) const {
        std::string id = field.text();
        const auto& scenes = m_application.scenes;
        if (std::none_of(scenes.begin(), scenes.end(), [&](const Entry& scene) { return scene.id == id; }))
            field.refuse("there is no scene \"" + id + "\"");
        return id;
    }

    fs::path pictureIn(const Field& field) const {
        const fs::path place = placeIn(m_application.folder, field);
        if (!fs::is_regular_file(place))
            field.refuse("\"" + field.text() + "\" is not a file");
        return place.lexically_relative(m_application.folder);
    }

    Application& m_application;
    std::set<std::string> m_ids;
};

void readInto(Application& application, const Field& root) {
    root.allowOnly(
        {"id", "title", "theme", "featureFlags", "template", "scenes", "pages", "triggers", "texts"});
    application.title = root.member("title").text();
    if (root.has("id")) {
        application.id = root.member("id").text();
        if (!g_uuid_string_is_valid(application.id.c_str()))
            root.member("id").refuse("expected a UUID");
    }
    if (root.has("theme"))
        application.theme = root.member("theme").text();
    if (root.has("featureFlags"))
        root.member("featureFlags").eachItem([&](const Field& flag) {
            application.featureFlags.push_back(flag.text());
        });
    const json::value usual("template");
    application.page = placeIn(application.folder,
                               root.has("template") ? root.member("template") : Field(usual, "template"));
    std::set<std::string> ids;
    if (root.has("scenes"))
        application.scenes = entriesIn(root.member("scenes"), ids);
    if (root.has("pages"))
        application.pages = entriesIn(root.member("pages"), ids);
    Recognised recognised(application);
    if (root.has("triggers"))
        root.member("triggers").eachItem([&](const Field& item) { recognised.readTrigger(item); });
    if (root.has("texts"))
        root.member("texts").eachItem([&](const Field& item) { recognised.readText(item); });
}

Application readFolder(const fs::path& folder) {
    const fs::path file = folder / "application.json";
    try {
        Application application;
        std::error_code missing;
        application.folder = fs::canonical(folder, missing);
        const json::value root = parse(file);
        readInto(application, Field(root, ""));
        return application;
    } catch (const FieldError& wrong) {
        throw std::runtime_error(file.string() + ": " + wrong.what());
    } catch (const fs::filesystem_error& wrong) {
        throw std::runtime_error(file.string() + ": " + wrong.code().message());
    }
}

} // namespace

Application readApplication(const ApplicationSource& source) {
    const auto* const folder = std::get_if<ApplicationFolder>(&source);
    return checked(folder ? readFolder(folder->path) : std::get<Application>(source));
}

} // namespace kestrin::content
