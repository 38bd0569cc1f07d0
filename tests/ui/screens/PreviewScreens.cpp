#include "tests/ui/screens/PreviewScreens.h"

#include <fstream>
#include <string>

#include "Tarn/ui/inspector/Inspector.h"
#include "Tarn/ui/preview/PreviewWidget.h"
#include "Tarn/ui/quicklook/QuickLook.h"
#include "TarnCore/files/Paths.h"
#include "tests/ui/screens/SampleFiles.h"

namespace tarn {
namespace {

const auto work = ScreenHome::work;

void open(Stage& stage, const URL& file) {
    stage.go(Location::folder(file.parent()));
    stage.pane().select({file});
    stage.model().setShowsQuickLook(true);
    auto* look = stage.window().findChild<QuickLook*>();
    stage.wait([&] { return look->preview().isSettled(); });
}

void made(Stage& stage, const char* name, const std::string& content) {
    const URL file = work(name);
    std::ofstream(file.path(), std::ios::binary) << content;
    open(stage, file);
}

/// The first of these that the machine has.
void font(Stage& stage) {
    for (const char* path : {"/usr/share/fonts/opentype/inter/Inter-Regular.otf",
                             "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"})
        if (std::ifstream(path)) return open(stage, URL::fromPath(path));
}

void inspected(Stage& stage, std::initializer_list<const char*> names) {
    stage.go(Location::folder(Paths::documents()));
    stage.select(names);
    stage.model().setShowsInspector(true);
    auto* inspector = stage.window().findChild<Inspector*>();
    stage.wait([&] { return !inspector->isVisible() || inspector->preview().isSettled(); });
}

const Screen previews[] = {
    {"preview-pages",
     [](Stage& s) { open(s, Paths::documents().appending("Lease Agreement.pdf")); }, true},
    {"preview-table", [](Stage& s) { open(s, Paths::documents().appending("Budget 2026.ods")); },
     true},
    {"preview-archive", [](Stage& s) { open(s, Paths::documents().appending("Survey.zip")); },
     true},
    {"preview-film", [](Stage& s) { made(s, "Sunrise.avi", SampleFiles::film()); }, true},
    {"preview-sound", [](Stage& s) { made(s, "Tone.wav", SampleFiles::sound()); }, true},
    {"preview-font", font, true},
    {"preview-code",
     [](Stage& s) {
         made(s, "hello.cpp",
              "#include <iostream>\n\n// Says hello.\nint main() {\n    const int times = 3;\n"
              "    for (int i = 0; i < times; ++i)\n        std::cout << \"Hello\" << '\\n';\n}\n");
     },
     true},
    {"preview-damaged", [](Stage& s) { open(s, Paths::home().appending("Broken.zip")); }, true},
    {"inspector-several",
     [](Stage& s) {
         inspected(s, {"Budget 2026.ods", "Notes.txt"});
     },
     true},
    {"inspector-folder", [](Stage& s) { inspected(s, {"Letters"}); }, true},
};

}  // namespace

std::span<const Screen> previewScreens() { return previews; }

}  // namespace tarn
