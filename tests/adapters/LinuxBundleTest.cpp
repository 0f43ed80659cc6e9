#include <cstdlib>

#include "linux/bundle/LinuxBundle.h"
#include "support/AdapterTest.h"

namespace quilex {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

class LinuxBundleTest : public AdapterTest {};

TEST_F(LinuxBundleTest, OnlyStringsOfTheInformationDictionaryHaveAValue) {
  const LinuxBundle bundle(folder);
  EXPECT_THAT(bundle.environment().informationDictionary, IsEmpty());
  for (const char* malformed : {"", "{\"a\":", "[\"a\"]"}) {
    writeFile(folder / "Info.json", malformed);
    EXPECT_THAT(bundle.environment().informationDictionary, IsEmpty()) << malformed;
  }
  writeFile(folder / "Info.json", R"({"short": "1.2", "build": 7})");
  EXPECT_THAT(bundle.environment().informationDictionary,
              ElementsAre(Pair("build", std::nullopt), Pair("short", std::optional<std::string>("1.2"))));
  EXPECT_EQ(bundle.resource("Info", "json"), folder / "Info.json");
  EXPECT_EQ(bundle.resource("Quilex", "db"), std::nullopt);
}

TEST_F(LinuxBundleTest, DirectoriesComeFromAbsoluteVariablesOnly) {
  const auto directories = LinuxBundle(folder).environment().userDirectories;
  setenv("HOME", "/home/someone", 1);
  for (const char* ignored : {"", "relative/path"}) {
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
      setenv(variable, ignored, 1);
    }
    EXPECT_EQ(configHome(), "/home/someone/.config");
    EXPECT_EQ(dataHome(), "/home/someone/.local/share");
    EXPECT_THAT(directories(SearchPathDirectory::caches), ElementsAre("/home/someone/.cache"));
  }
  setenv("XDG_CONFIG_HOME", "/c", 1);
  setenv("XDG_DATA_HOME", "/d", 1);
  EXPECT_EQ(configHome(), "/c");
  EXPECT_THAT(directories(SearchPathDirectory::applicationSupport), ElementsAre("/d"));
}

}  // namespace quilex
