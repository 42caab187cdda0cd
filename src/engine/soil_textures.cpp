#include "soil_textures.h"

namespace rainfold {

namespace {

std::string Key(const std::string& name) {
    std::string key;
    for (char c : name) {
        if (c == ' ' || c == '-' || c == '_')
            c = ' ';
        else if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
        if (c == ' ' && (key.empty() || key.back() == ' '))
            continue;
        key += c;
    }
    while (!key.empty() && key.back() == ' ')
        key.pop_back();
    return key;
}

} // namespace

const SoilTexture* FindSoilTexture(const std::string& name) {
    const std::string key = Key(name);
    for (const SoilTexture& texture : kSoilTextures)
        if (Key(texture.name) == key)
            return &texture;
    return nullptr;
}

} // namespace rainfold
