#ifndef QV_TEST_TEMP_DIR_H
#define QV_TEST_TEMP_DIR_H

#include <optional>
#include <string>
#include <vector>

namespace qvtest {

// A fresh directory under the system's temporary folder, removed with
// everything in it when the object goes.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir &) = delete;
  TempDir &operator=(const TempDir &) = delete;

  const std::string &path() const { return m_path; }
  // path()/name.
  std::string file(const std::string &name) const { return m_path + "/" + name; }
  // Writes text to path()/name and returns the full name.
  std::string write(const std::string &name, const std::string &text) const;

 private:
  std::string m_path;
};

// The whole content of a file, "" if it cannot be read.
std::string readFile(const std::string &file_name);

// The message part of each line of a log text: the time and frame-number
// prefix removed.
std::vector<std::string> logMessages(const std::string &log_text);

// Sets an environment variable, or unsets it when value is null.
void setEnv(const std::string &name, const char *value);

// Sets or unsets (setEnv) an environment variable for the life of the
// object, then restores what was there before.
class ScopedEnv {
 public:
  ScopedEnv(const std::string &name, const char *value);
  ~ScopedEnv() { setEnv(m_name, m_old_value ? m_old_value->c_str() : nullptr); }
  ScopedEnv(const ScopedEnv &) = delete;
  ScopedEnv &operator=(const ScopedEnv &) = delete;

 private:
  std::string m_name;
  std::optional<std::string> m_old_value;
};

}  // namespace qvtest

#endif
