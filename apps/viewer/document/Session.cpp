#include "viewer/document/Session.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>

#include <glm/geometric.hpp>
#include <nlohmann/json.hpp>

#include "viewer/camera/CameraGuard.h"
#include "viewer/document/DrawingJson.h"

namespace vpc::viewer {

namespace {

using Json = OrderedJson;

constexpr int sessionVersion = 1;
constexpr int deepest = 32;
constexpr std::size_t mostItems = 10'000;
constexpr std::size_t longestText = 32'768;

std::filesystem::path folderOf(const std::string& sessionFile) {
    std::error_code ignored;  // the working folder is gone: nothing is below the session's then
    return std::filesystem::absolute(sessionFile, ignored).lexically_normal().parent_path();
}

// Writing

void requireFinite(const Json& json) {
    if (json.is_number_float() && !std::isfinite(json.get<double>()))
        throw SessionError("The session cannot be saved, since one of its numbers is not finite.");
    if (json.is_structured())
        for (const Json& part : json) requireFinite(part);
}

std::string portableName(const std::string& file, const std::filesystem::path& folder) {
    const std::filesystem::path relative =
        std::filesystem::path(file).lexically_normal().lexically_relative(folder);
    const bool isBelow = !relative.empty() && *relative.begin() != ".." && relative != ".";
    return isBelow ? relative.generic_string() : file;
}

template <class Item>
Json toArray(const std::vector<Item>& items) {
    Json array = Json::array();
    for (const Item& item : items) array.push_back(toJson(item));
    return array;
}

Json toArray(std::vector<Entity> entities, const std::filesystem::path& folder) {
    for (Entity& entity : entities) entity.file = portableName(entity.file, folder);
    return toArray(entities);
}

// Reading

/// An object of the file, or a part of one, which knows for messages where it stands.
class Part {
public:
    Part(const Json& json, std::string where) : json_(json), where_(std::move(where)) {
        if (!json.is_object()) Fail("is no object");
    }

    [[noreturn]] void Fail(const std::string& problem) const {
        throw SessionError("\"" + where_ + "\" " + problem);
    }
    Part Object(const char* key) const {
        static const Json none = Json::object();
        const Json* value = Find(key);
        return {value ? *value : none, Inner(key)};
    }
    template <class Visit>
    void Each(const char* key, Visit visit) const {
        const Json* array = Find(key);
        if (!array) return;
        Require(array->is_array() && array->size() <= mostItems, key,
                "is no list, or too long a one");
        for (std::size_t i = 0; i < array->size(); ++i)
            visit((*array)[i], Inner(key) + "[" + std::to_string(i + 1) + "]");
    }
    void Read(const char* key, bool& value) const {
        if (const Json* found = Find(key)) {
            Require(found->is_boolean(), key, "is neither true nor false");
            value = found->get<bool>();
        }
    }
    void Read(const char* key, double& value) const {
        if (const Json* found = Find(key)) value = Number(*found, key);
    }
    void Read(const char* key, std::string& value) const {
        if (const Json* found = Find(key)) {
            Require(found->is_string(), key, "is no text");
            value = found->get<std::string>();
            Require(value.size() <= longestText && value.find('\0') == std::string::npos, key,
                    "is too long a text, or has a zero in it");
        }
    }
    template <class Integer>
    void Read(const char* key, Integer& value, Integer least, Integer most) const {
        if (const Json* found = Find(key)) {
            const auto isIn = [&](auto number) {
                return std::cmp_greater_equal(number, least) && std::cmp_less_equal(number, most);
            };
            const bool fits = found->is_number_unsigned()
                                  ? isIn(found->get<std::uint64_t>())
                                  : found->is_number_integer() && isIn(found->get<std::int64_t>());
            Require(fits, key, "is no whole number in its range");
            value = found->get<Integer>();
        }
    }
    void Read(const char* key, glm::dvec3& value) const {
        if (const Json* found = Find(key)) {
            Require(found->is_array() && found->size() == 3, key, "is no list of three numbers");
            for (int i = 0; i < 3; ++i)
                value[i] = Number((*found)[static_cast<std::size_t>(i)], key);
        }
    }
    void Read(const char* key, std::vector<glm::dvec2>& value) const {
        value.clear();
        Each(key, [&](const Json& corner, const std::string&) {
            Require(corner.is_array() && corner.size() == 2, key, "is no list of pairs of numbers");
            value.push_back({Number(corner[0], key), Number(corner[1], key)});
        });
    }
    void Read(const char* key, draw::Colour& value) const {
        const glm::dvec3 unchanged(value.red, value.green, value.blue);
        glm::dvec3 channels = unchanged;
        Read(key, channels);
        for (int i = 0; i < 3; ++i)
            Require(channels[i] >= 0.0 && channels[i] <= 255.0, key, "is no colour");
        value = {static_cast<std::uint8_t>(channels.x), static_cast<std::uint8_t>(channels.y),
                 static_cast<std::uint8_t>(channels.z)};
    }
    /// A direction of length 1.
    void ReadDirection(const char* key, glm::dvec3& value) const {
        Read(key, value);
        Require(std::abs(glm::length(value) - 1.0) <= 1e-6, key, "is no direction of length 1");
    }
    void Require(bool holds, const char* key, const char* problem) const {
        if (!holds) throw SessionError("\"" + Inner(key) + "\" " + problem);
    }

private:
    const Json* Find(const char* key) const {
        const auto found = json_.find(key);
        return found == json_.end() ? nullptr : &*found;
    }
    std::string Inner(const char* key) const { return where_.empty() ? key : where_ + "." + key; }
    double Number(const Json& json, const char* key) const {
        Require(json.is_number(), key, "is no number");
        return json.get<double>();
    }

    const Json& json_;
    std::string where_;
};

Entity entityFrom(const Part& part, const std::filesystem::path& folder) {
    Entity entity;
    part.Read("file", entity.file);
    part.Require(!entity.file.empty(), "file", "is missing");
    entity.file = (folder / entity.file).lexically_normal().string();
    part.Read("name", entity.name);
    part.Read("visible", entity.visible);
    part.Read("location", entity.placement.location);
    part.Read("rotation", entity.placement.rotation);
    part.Read("scale", entity.placement.scale);
    part.Require(entity.placement.scale > 0.0, "scale", "is not above 0");
    part.Read("stylization", entity.stylization, 0, 100);
    part.Read("colourScheme", entity.colourScheme);
    part.Read("cropped", entity.cropped);
    part.Read("locked", entity.locked);
    return entity;
}

Section sectionFrom(const Part& part) {
    Section section;
    part.Read("name", section.name);
    part.Read("point", section.point);
    part.ReadDirection("normal", section.normal);
    part.Read("enabled", section.enabled);
    return section;
}

Clip clipFrom(const Part& part) {
    Clip clip;
    part.Read("name", clip.name);
    part.Read("origin", clip.origin);
    part.ReadDirection("xAxis", clip.xAxis);
    part.ReadDirection("yAxis", clip.yAxis);
    part.Require(std::abs(glm::dot(clip.xAxis, clip.yAxis)) <= 1e-6, "yAxis",
                 "is not at a right angle to the x axis");
    part.Read("corners", clip.corners);
    part.Require(clip.corners.size() >= 3, "corners", "are fewer than three");
    part.Read("keepsInside", clip.keepsInside);
    part.Read("enabled", clip.enabled);
    return clip;
}

ViewStyle styleFrom(const Part& part) {
    ViewStyle style;
    std::string sizing = sizingNames[0];
    part.Read("sizing", sizing);
    const auto name = std::find(sizingNames.begin(), sizingNames.end(), sizing);
    part.Require(name != sizingNames.end(), "sizing", "is unknown");
    style.sizing = static_cast<PointSizing>(name - sizingNames.begin());
    part.Read("pointSize", style.pointSize);
    part.Require(style.pointSize > 0.0, "pointSize", "is not above 0");
    part.Read("roundPoints", style.roundPoints);
    part.Read("shaded", style.shaded);
    part.Read("background", style.background);
    part.Read("axes", style.axes);
    part.Read("scaleBar", style.scaleBar);
    part.Read("legend", style.legend);
    return style;
}

ViewCamera cameraFrom(const Part& part) {
    ViewCamera camera;
    part.Read("eye", camera.eye);
    part.Read("target", camera.target);
    part.Read("up", camera.up);
    part.Read("fieldHeight", camera.fieldHeight);
    part.Read("perspective", camera.perspective);
    if (!isSound(camera)) part.Fail("shows nothing: its numbers are no view");
    return camera;
}

Session sessionFrom(const Json& json, const std::filesystem::path& folder) {
    if (!json.is_object() || !json.contains("vpcview"))
        throw SessionError("it is a JSON file of something else");
    const Part root(json, "");
    int version = 0;
    root.Read("vpcview", version, 1, std::numeric_limits<int>::max());
    if (version > sessionVersion)
        throw SessionError("a newer version of this program has saved it");

    Session session;
    Drawing& drawing = session.drawing;
    root.Each("entities", [&](const Json& item, const std::string& where) {
        drawing.entities.push_back(entityFrom({item, where}, folder));
        drawing.entities.back().id = static_cast<int>(drawing.entities.size());
    });
    root.Each("sections", [&](const Json& item, const std::string& where) {
        drawing.sections.push_back(sectionFrom({item, where}));
    });
    root.Each("clips", [&](const Json& item, const std::string& where) {
        drawing.clips.push_back(clipFrom({item, where}));
    });
    drawing.style = styleFrom(root.Object("style"));
    root.Read("unit", drawing.unit);
    root.Read("pointBudget", drawing.pointBudget, 0ULL, 1'000'000'000'000ULL);
    session.camera = cameraFrom(root.Object("camera"));
    return session;
}

Json parsed(const std::string& text) {
    const auto limitDepth = [](int depth, Json::parse_event_t, Json&) {
        if (depth > deepest) throw SessionError("it is a JSON file of something else");
        return true;
    };
    try {
        return Json::parse(text, limitDepth);
    } catch (const Json::parse_error& error) {
        throw SessionError("it is no JSON file, or a part of one: something is wrong at byte " +
                           std::to_string(error.byte));
    } catch (const Json::exception&) {
        throw SessionError("it has a number that is too large");
    }
}

}  // namespace

std::string sessionText(const Session& session, const std::string& sessionFile) {
    const Drawing& drawing = session.drawing;
    const Json json = {{"vpcview", sessionVersion},
                       {"entities", toArray(drawing.entities, folderOf(sessionFile))},
                       {"sections", toArray(drawing.sections)},
                       {"clips", toArray(drawing.clips)},
                       {"style", toJson(drawing.style)},
                       {"unit", drawing.unit},
                       {"pointBudget", drawing.pointBudget},
                       {"camera", toJson(session.camera)}};
    requireFinite(json);
    try {
        return json.dump(2) + "\n";
    } catch (const Json::type_error&) {
        throw SessionError("The session cannot be saved, since a file's name is not UTF-8.");
    }
}

Session sessionFromText(const std::string& text, const std::string& sessionFile) {
    try {
        return sessionFrom(parsed(text), folderOf(sessionFile));
    } catch (const SessionError& error) {
        throw SessionError("The session " + sessionFile + " cannot be opened: " + error.what() +
                           ".");
    }
}

}  // namespace vpc::viewer
