#pragma once

#include "session/Field.h"
#include "session/Room.h"

#include <filesystem>
#include <map>

namespace kestrin::session {

/// Builds a room from its description, which docs/rooms.md explains. Throws FieldError.
class RoomReader {
  public:
    RoomReader(std::filesystem::path folder, const platform::ImageCodec& codec);
    Room read(const Field& document);

  private:
    void readSurface(const Field& field);
    void readBox(const Field& field);
    void readPicture(const Field& field);
    void readCode(const Field& field);
    void addPicture(const Field& field, const Texture& texture);
    Material readMaterial(const Field& field);
    Texture readTexture(const Field& field);
    platform::Image readImage(const Field& field, const std::string& file);

    const std::filesystem::path m_folder;
    const platform::ImageCodec& m_codec;
    std::map<std::string, platform::Image> m_images;
    Room m_room;
};

} // namespace kestrin::session
