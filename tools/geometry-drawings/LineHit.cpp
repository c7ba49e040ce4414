#include "Drawings.h"

namespace kora::drawings {
namespace {

constexpr LRCT kPanel = {0, 0, 110, 180};
constexpr long kTolerance = 9;

// Every point of the panel is tried; those hit in a row make one bar.
void band(Svg& svg, LPNT a, LPNT b, bool centred) {
    for (std::int32_t v = kPanel.top; v < kPanel.bottom; ++v) {
        std::int32_t from = kPanel.right;
        for (std::int32_t h = kPanel.left; h <= kPanel.right; ++h) {
            const bool hit = h < kPanel.right && UtlLineHitTest(a, b, {v, h}, kTolerance, centred);
            if (hit && from == kPanel.right) from = h;
            if (!hit && from < h) {
                svg.rect({v, from, v + 1, h}, "tint");
                from = kPanel.right;
            }
        }
    }
}

void panel(Svg& svg, LPNT a, LPNT b, bool centred) {
    svg.rect(kPanel, "grey");
    band(svg, a, b, centred);
    svg.line(a, b, "ink");
    svg.dot(a, "redDot");
    svg.dot(b, "redDot");
}

}  // namespace

std::string lineHit() {
    struct Line {
        LPNT a, b;
        const char* title;
    };
    constexpr Line lines[] = {
        {{55, 50}, {55, 130}, "horizontal"}, {{72, 55}, {38, 125}, "oblique"}, {{82, 76}, {28, 104}, "steep"}};
    Svg svg(650, 300);
    int column = 0;
    for (const Line& line : lines) {
        svg.moveTo({34, column * 195 + 75});
        svg.text({-12, 90}, line.title, "title mid");
        panel(svg, line.a, line.b, true);
        svg.moveTo({164, column * 195 + 75});
        panel(svg, line.a, line.b, false);
        ++column;
    }
    svg.moveTo({0, 0});
    svg.text({94, 8}, "centred", "title");
    svg.text({218, 8}, "not", "title");
    svg.text({233, 8}, "centred", "title");
    svg.text({292, 360}, "tolerance 9; the dots are the line's ends", "mid note");
    return svg.file();
}

}  // namespace kora::drawings
