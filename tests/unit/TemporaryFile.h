/// \file
/// Files that tests read.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

/// A file of the test, gone with it.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& content)
      : path_(std::filesystem::temp_directory_path() /
              ("kestrix-test-" + std::to_string(::getpid()) + "-" + std::to_string(number_++))) {
    std::ofstream(path_) << content;
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { std::filesystem::remove(path_); }
  [[nodiscard]] std::string path() const { return path_.string(); }

 private:
  static inline int number_ = 0;
  std::filesystem::path path_;
};
