#pragma once

#include <string>
#include <vector>

namespace cmpinsp {

/// What the placeholders of a run path stand for. Where a program cannot know which one the loader
/// takes, there are several.
struct Placeholders {
  std::string origin;                  ///< $ORIGIN
  std::vector<std::string> folders;    ///< $LIB
  std::vector<std::string> platforms;  ///< $PLATFORM
};

/// Everything that the text may stand for, with its placeholders ($NAME or ${NAME}) replaced;
/// nothing where that are too many texts.
std::vector<std::string> expansionsOf(const std::string& text, const Placeholders& placeholders);

/// The folders that a run path names, as they are written; an empty one is the current folder.
std::vector<std::string> foldersIn(const std::string& runPath);

/// What $LIB may stand for, which is made of the same words as the loader's own folders.
std::vector<std::string> libraryFoldersOf(const std::vector<std::string>& defaultFolders);

}  // namespace cmpinsp
