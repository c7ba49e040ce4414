#include <cstdio>
#include <fstream>

#include "Drawings.h"

// Writes the drawings into the folder named, as they stand in docs/drawings.
int main(int count, char** arguments) {
    using namespace kora::drawings;
    if (count != 2) {
        std::fputs("usage: kora-geometry-drawings FOLDER\n", stderr);
        return 2;
    }
    struct Drawing {
        const char* name;
        std::string (*draw)();
    };
    constexpr Drawing drawings[] = {{"anchors", anchors}, {"orientations", orientations}, {"rotation", rotation},
                                    {"arc", arc},         {"line-hit", lineHit},          {"region", region}};
    for (const Drawing& drawing : drawings) {
        std::ofstream file(std::string(arguments[1]) + '/' + drawing.name + ".svg", std::ios::binary);
        file << drawing.draw();
        if (!file.flush()) {
            std::fprintf(stderr, "%s.svg cannot be written\n", drawing.name);
            return 1;
        }
    }
    return 0;
}
