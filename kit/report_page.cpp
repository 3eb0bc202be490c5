#include "report_page.h"

#include "trace/json_text.h"

namespace PlenxKit {
namespace {

constexpr char kBeforeTitle[] = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title>)";

constexpr char kStyle[] = R"(</title>
<style>
body { font: 15px/1.5 system-ui, sans-serif; margin: 2rem auto; padding: 0 1rem; }
h1 { font-size: 1.4rem; }
table { border-collapse: collapse; width: 100%; }
th, td { text-align: left; vertical-align: top; padding: .3rem .6rem;
  border-bottom: 1px solid #8885; }
.passed { color: #1a7f37; } .failed { color: #cf222e; font-weight: 600; }
@media (prefers-color-scheme: dark) {
  .passed { color: #3fb950; } .failed { color: #f85149; } }
pre { overflow-x: auto; background: #8882; padding: .6rem; font-size: 13px; }
)";

constexpr char kBody[] = R"(</style>
</head>
<body>
)";

}  // namespace

std::string PageHead(const std::string& title, const std::string& style) {
    return kBeforeTitle + PlenxTrace::HtmlText(title) + kStyle + style + kBody;
}

std::string Marked(const std::string& style, const std::string& text) {
    return "<span class=\"" + style + "\">" + PlenxTrace::HtmlText(text) + "</span>";
}

}  // namespace PlenxKit
