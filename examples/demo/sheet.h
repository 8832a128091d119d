// The contact sheet: pictures with captions, as files and as a page that shows them.
#pragma once
#include <string>
#include <vector>
#include "gaussian.h"

namespace demo {

class Sheet {
 public:
  // Pictures and page go into `directory`, which must exist.
  explicit Sheet(std::string directory) : directory_(std::move(directory)) {}

  void fact(const std::string& name, const std::string& value);
  void section(const std::string& title, const std::string& text);
  // Adds a picture; prints its time, if it has one, and notes it in the page. `call` is the function that made it.
  void picture(const Bytes& image, const std::string& stem, const std::string& title, const std::string& caption,
               const std::string& call = "", double seconds = 0);
  // Adds a table below the pictures of the section; prints it.
  void table(const std::vector<std::string>& head, const std::vector<std::vector<std::string>>& rows);
  // Writes index.html; returns its path.
  std::string finish(const std::string& title);

 private:
  struct Picture {
    std::string file, title, caption, call, time;
    int width, height;
  };
  struct Section {
    std::string title, text;
    std::vector<Picture> pictures;
    std::string tables;
  };

  std::string directory_;
  std::vector<std::pair<std::string, std::string>> facts_;
  std::vector<Section> sections_;
};

}  // namespace demo
