#pragma once

#include <QString>
#include <filesystem>
#include <string>
#include <string_view>

namespace texturon {

// Texts and paths between the engine (Windows-1252, std) and Qt.

QString FromText(std::string_view windows1252);
std::string ToText(const QString& text);
QString FromPath(const std::filesystem::path& path);
std::filesystem::path ToPath(const QString& path);

}  // namespace texturon
