#include <gtest/gtest.h>

#include "TarnCore/index/readers/NotebookText.h"

namespace tarn {
namespace {

TEST(NotebookText, saysSourcesAndResults) {
    const struct {
        const char* name;
        std::string bytes;
        const char* text;
    } cases[] = {
        {"cells",
         R"json({"metadata":{"title":"x"},"cells":[{"cell_type":"markdown","source":["# Head\n","a <b> c"]},
             {"cell_type":"code","source":"if a < b:\n    print(\"ü\")","outputs":[
                {"output_type":"stream","text":["printed\n","twice\n"]},
                {"data":{"text/plain":["3.14"],"image/png":"iVBORw0KGgo=","text/html":"<p>x"}},
                {"ename":"ValueError","evalue":"bad","traceback":["x"]}]}]})json",
         "# Head\na <b> c\nif a < b:\nprint(\"ü\")\nprinted\ntwice\n3.14\nValueError\nbad"},
        {"an older form",
         R"({"worksheets":[{"cells":[{"input":["1+1"],"outputs":[{"text":"2"}]}]}]})", "1+1\n2"},
        {"no cells", R"({"cells":[]})", nullptr},
        {"another document", R"({"source":"x"})", nullptr},
        {"a list", R"(["cells"])", nullptr},
        {"a torn one", R"({"cells":[{"source":"x"})", nullptr},
        {"no JSON", "cells", nullptr},
        {"nothing", "", nullptr},
        {"a deep one", std::string(100'000, '['), nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        if (c.text) {
            EXPECT_EQ(NotebookText::read(c.bytes), c.text);
        } else {
            EXPECT_EQ(NotebookText::read(c.bytes), std::nullopt);
        }
    }
}

}  // namespace
}  // namespace tarn
