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

std::string TempDir::write(const std::string &name, const std::string &text) const {
  std::ofstream(file(name), std::ios::binary) << text;
  return file(name);
}

std::string readFile(const std::string &file_name) {
  std::stringstream text;
  text << std::ifstream(file_name, std::ios::binary).rdbuf();
  return text.str();
}

std::vector<std::string> logMessages(const std::string &log_text) {
  std::vector<std::string> messages;
  std::istringstream in(log_text);
  std::string line;
  while (std::getline(in, line)) {
    // "HH:MM:SS " then the frame number right-aligned in at least four
    // columns and one blank.
    size_t pos = line.find_first_not_of(' ', 9);
    if (pos != std::string::npos) pos = line.find_first_not_of("-0123456789", pos);
    messages.push_back(pos < line.size() ? line.substr(pos + 1) : "");
  }
  return messages;
}

void setEnv(const std::string &name, const char *value) {
  if (value)
    setenv(name.c_str(), value, 1);
  else
    unsetenv(name.c_str());
}

ScopedEnv::ScopedEnv(const std::string &name, const char *value) : m_name(name) {
  if (const char *old = std::getenv(name.c_str())) m_old_value = old;
  setEnv(name, value);
}

}  // namespace qvtest
