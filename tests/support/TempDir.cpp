#include "TempDir.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace qvtest {

TempDir::TempDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "quorvelle-test-XXXXXX").string();
  if (mkdtemp(pattern.data())) m_path = pattern;
}

TempDir::~TempDir() {
  std::error_code ignored;
  if (!m_path.empty()) std::filesystem::remove_all(m_path, ignored);
}

std::string TempDir::file(const std::string &name) const {
  return m_path + "/" + name;
}

std::string TempDir::write(const std::string &name, const std::string &text) const {
  std::string full = file(name);
  std::ofstream(full, std::ios::binary) << text;
  return full;
}

std::string readFile(const std::string &file_name) {
  std::ifstream in(file_name, std::ios::binary);
  std::stringstream ss;
  ss << in.rdbuf();
  return ss.str();
}

std::vector<std::string> logMessages(const std::string &log_text) {
  std::vector<std::string> messages;
  std::istringstream in(log_text);
  std::string line;
  while (std::getline(in, line)) {
    // "HH:MM:SS " then the frame number right-aligned in at least four
    // columns and one blank.
    size_t pos = 9;
    while (pos < line.size() && line[pos] == ' ') pos++;
    while (pos < line.size() &&
           (line[pos] == '-' || isdigit(static_cast<unsigned char>(line[pos]))))
      pos++;
    messages.push_back(pos < line.size() ? line.substr(pos + 1) : "");
  }
  return messages;
}

ScopedEnv::ScopedEnv(const std::string &name, const char *value) : m_name(name) {
  const char *old = std::getenv(name.c_str());
  m_had_value = old != nullptr;
  if (old) m_old_value = old;
  if (value)
    setenv(name.c_str(), value, 1);
  else
    unsetenv(name.c_str());
}

ScopedEnv::~ScopedEnv() {
  if (m_had_value)
    setenv(m_name.c_str(), m_old_value.c_str(), 1);
  else
    unsetenv(m_name.c_str());
}

}  // namespace qvtest
