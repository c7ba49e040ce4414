#include "Svg.h"

namespace kora::drawings {
namespace {

// The background is white whatever stands around the picture.
constexpr char kStyles[] =
    "<style>"
    "text{font:12px sans-serif;fill:#222}"
    ".title{font-weight:bold}.small{font-size:11px}.note{fill:#666}.mid{text-anchor:middle}.end{text-anchor:end}"
    ".ink{stroke:#222}.grey{stroke:#999}.blue{stroke:#1f5fa8}.red{stroke:#c0392b}"
    ".ink,.grey,.blue,.red{fill:none;stroke-width:1.5}"
    ".thin{stroke-width:.7}.bold{stroke-width:3}.dashed{stroke-dasharray:4 3}"
    ".solid{fill:#9a9a9a;stroke:none}.pale{fill:#e9eef5;stroke:none}.tint{fill:#1f5fa8;fill-opacity:.22;stroke:none}"
    ".glow{fill:#c0392b;fill-opacity:.25;stroke:none}"
    ".inkDot{fill:#222}.greyDot{fill:#999}.blueDot{fill:#1f5fa8}.redDot{fill:#c0392b}.greenDot{fill:#2e7d32}"
    ".orangeDot{fill:#d07a1b}"
    ".redText{fill:#c0392b}.blueText{fill:#1f5fa8}.greenText{fill:#2e7d32}.orangeText{fill:#a85b08}"
    "</style>\n"
    "<defs><marker id=\"tip\" viewBox=\"0 0 8 8\" refX=\"7\" refY=\"4\" markerWidth=\"7\" markerHeight=\"7\""
    " orient=\"auto\"><path d=\"M0 0L8 4L0 8z\" fill=\"#222\"/></marker></defs>\n";

std::string number(std::int32_t value) { return std::to_string(value); }

std::string quoted(const char* name, std::int32_t value) {
    return ' ' + std::string(name) + "=\"" + number(value) + '"';
}

std::string line(LPNT a, LPNT b) {
    return "<line" + quoted("x1", a.h) + quoted("y1", a.v) + quoted("x2", b.h) + quoted("y2", b.v);
}

std::string polygon(const std::vector<LPNT>& corners) {
    std::string text = "<polygon points=\"";
    for (const LPNT& corner : corners) text += number(corner.h) + ',' + number(corner.v) + ' ';
    text.back() = '"';
    return text;
}

std::string ellipse(LRCT r) {
    LPNT middle;
    UtlRectAnchorToPnt(&middle, &r, UtlAnchorCenter);
    return "<ellipse" + quoted("cx", middle.h) + quoted("cy", middle.v) + quoted("rx", r.right - middle.h) +
           quoted("ry", r.bottom - middle.v);
}

}  // namespace

Svg::Svg(int width, int height) {
    text_ = "<svg xmlns=\"http://www.w3.org/2000/svg\"" + quoted("width", width) + quoted("height", height) +
            " viewBox=\"0 0 " + number(width) + ' ' + number(height) + "\">\n" + kStyles + "<rect" +
            quoted("width", width) + quoted("height", height) + " fill=\"#fff\"/>\n";
}

void Svg::element(const std::string& text, const char* style) { text_ += text + " class=\"" + style + "\"/>\n"; }

void Svg::moveTo(LPNT origin, int percent) {
    if (moved_) text_ += "</g>\n";
    text_ += "<g transform=\"translate(" + number(origin.h) + ' ' + number(origin.v) + ')';
    if (percent != 100) text_ += " scale(." + number(percent) + ')';
    text_ += "\">\n";
    moved_ = true;
}

void Svg::line(LPNT a, LPNT b, const char* style) { element(drawings::line(a, b), style); }

void Svg::arrow(LPNT from, LPNT to) { element(drawings::line(from, to) + " marker-end=\"url(#tip)\"", "ink"); }

void Svg::turnArrow(LPNT from, LPNT to, std::int32_t radius) {
    element("<path d=\"M" + number(from.h) + ' ' + number(from.v) + 'A' + number(radius) + ' ' + number(radius) +
                " 0 0 0 " + number(to.h) + ' ' + number(to.v) + "\" marker-end=\"url(#tip)\"",
            "ink");
}

void Svg::rect(const LRCT& r, const char* style) {
    element("<rect" + quoted("x", r.left) + quoted("y", r.top) + quoted("width", r.right - r.left) +
                quoted("height", r.bottom - r.top),
            style);
}

void Svg::polygon(const std::vector<LPNT>& corners, const char* style) { element(drawings::polygon(corners), style); }

void Svg::ellipse(const LRCT& r, const char* style) { element(drawings::ellipse(r), style); }

void Svg::ellipseWithin(const LRCT& r, const std::vector<LPNT>& corners, const char* style) {
    const std::string name = "clip" + number(++clips_);
    text_ += "<clipPath id=\"" + name + "\">" + drawings::polygon(corners) + "/></clipPath>\n<g clip-path=\"url(#" +
             name + ")\">";
    ellipse(r, style);
    text_ += "</g>\n";
}

void Svg::dot(LPNT p, const char* style) {
    element("<circle" + quoted("cx", p.h) + quoted("cy", p.v) + " r=\"3.5\"", style);
}

void Svg::cross(LPNT p, const char* style) {
    line({p.v, p.h - 5}, {p.v, p.h + 5}, style);
    line({p.v - 5, p.h}, {p.v + 5, p.h}, style);
}

void Svg::text(LPNT p, const std::string& text, const char* style) {
    text_ += "<text" + quoted("x", p.h) + quoted("y", p.v) + " class=\"" + style + "\">" + text + "</text>\n";
}

std::string Svg::file() {
    if (moved_) text_ += "</g>\n";
    moved_ = false;
    return text_ + "</svg>\n";
}

}  // namespace kora::drawings
