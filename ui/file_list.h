#pragma once

#include <string>
#include <vector>

namespace murmelix::ui {

// The names of the files of a directory that match a pattern, sorted as the system sorts names.
class FileList {
  public:
    explicit FileList(const std::u16string& pattern) : pattern_(pattern) {}
    const std::u16string& Pattern() const { return pattern_; }
    const std::u16string& Path() const { return path_; }
    // Reads the directory.
    void setPath(const std::u16string& path);
    void Refresh();
    int ListCount() const { return static_cast<int>(names_.size()); }
    const std::u16string& List(int index) const { return names_.at(static_cast<std::size_t>(index)); }
    const std::vector<std::u16string>& names() const { return names_; }
    int ListIndex() const { return index_; } // from 0; -1 when nothing is selected
    void setListIndex(int index);

  private:
    std::u16string pattern_, path_;
    std::vector<std::u16string> names_;
    int index_ = -1;
};

// Carried out by win32/file_list.cpp.
namespace native {
std::vector<std::u16string> files(const std::u16string& directory, const std::u16string& pattern);
}

} // namespace murmelix::ui
