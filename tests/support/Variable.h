#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace velmora::testing {

/// An environment variable that gets its old value back.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    value ? ::setenv(name, value, 1) : ::unsetenv(name);
  }
  ~Variable() { old_ ? ::setenv(name_, old_->c_str(), 1) : ::unsetenv(name_); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> old_;
};

}  // namespace velmora::testing
