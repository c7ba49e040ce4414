#include "SheetPage.h"

#include <cstdlib>
#include <string_view>
#include <utility>

#include "SheetText.h"

namespace netlist {

namespace {

// What a sheet leaves to whoever draws it: vltgray, gray, dkred.
constexpr int kHeadingColour = 12, kHeadingLineColour = 9, kMarkColour = 18;

constexpr char kRules[] = R"(body{margin:0;background:var(--ground)}
table{border-spacing:0;color:var(--text);font:var(--font)}
tr{height:var(--height)}
td,th{padding:0 .9ch;white-space:pre;text-align:left;vertical-align:top}
td,th{box-sizing:border-box;border:solid var(--lines);border-width:0 1px 1px 0}
th,thead td{text-align:center;font-weight:inherit;color:var(--on-heading);background:var(--heading)}
th,thead td{position:sticky;z-index:1;border-color:var(--heading-lines)}
thead th,thead td{top:0}
tbody th,thead td{left:0}
thead td{z-index:2}
.c{text-align:center}
.r{text-align:right}
.p{color:var(--on-protected);background:var(--protected)}
[data-mark]{position:relative}
[data-mark]::before{content:attr(data-mark);position:absolute;left:.1ch;color:var(--mark)}
.p[data-mark]::before{color:inherit}
)";

// How many bytes at the front of a text are one character beyond ASCII in UTF-8; 0 when they are none.
std::size_t utf8Length(std::string_view text) {
    const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(0);
    const std::size_t length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc2 || first > 0xf4 || text.size() < length) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xc0U) != 0x80) return 0;
    // Longer than need be, halves of a pair, beyond the last character, and control characters.
    const unsigned second = byte(1);
    const bool isNone = (first == 0xc2 && second < 0xa0) || (first == 0xe0 && second < 0xa0) ||
                        (first == 0xed && second > 0x9f) || (first == 0xf0 && second < 0x90) ||
                        (first == 0xf4 && second > 0x8f);
    return isNone ? 0 : length;
}

void appendReference(unsigned character, CString& html) { html += "&#" + std::to_string(character) + ';'; }

CString escaped(std::string_view text) {
    constexpr unsigned kControlPictures = 0x2400, kDeletePicture = 0x2421, kReplacement = 0xfffd;
    CString html;
    while (!text.empty()) {
        const auto c = static_cast<unsigned char>(text.front());
        const std::size_t length = c < 0x80 ? 1 : utf8Length(text);
        if (c == '&' || c == '<' || c == '>' || c == '"' || c == '\'')
            appendReference(c, html);
        else if (c < ' ' || c == 0x7f)
            appendReference(c == 0x7f ? kDeletePicture : kControlPictures + c, html);
        else if (length == 0)
            appendReference(c < 0xa0 ? kReplacement : c, html);
        else
            html += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return html;
}

CString cssColour(unsigned long rgb) {
    constexpr char kDigits[] = "0123456789abcdef";
    CString text = "#";
    for (int i = 0; i < 3; ++i, rgb >>= 8) {
        text += kDigits[rgb >> 4 & 0xf];
        text += kDigits[rgb & 0xf];
    }
    return text;
}

long brightness(unsigned long rgb) {
    return static_cast<long>(299 * (rgb & 0xff) + 587 * (rgb >> 8 & 0xff) + 114 * (rgb >> 16 & 0xff));
}

class Page {
public:
    explicit Page(ShtSheet& sheet) : sheet_(sheet) {
        sheet.ShtSheetSizeGet(&rows_, &cols_);
        sheet.ShtSheetFontGet(&font_);
        LPNT size = {0, 0};
        sheet.WinTextMeasure("0", 1, &size);
        if (size.h > 0) characterWidth_ = size.h;
    }

    CString text(const CString& title) {
        html_ = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" + escaped(title) +
                "</title>\n<style>\n";
        addLook();
        html_ += "</style>\n</head>\n<body>\n<table>\n<colgroup>";
        for (short c = -1; c < cols_; ++c) html_ += "<col style=\"width:" + units(sheet_.ShtColSizeGet(c)) + "\">";
        html_ += "</colgroup>\n<thead>\n<tr><td></td>";
        for (short c = 0; c < cols_; ++c) html_ += "<th scope=\"col\">" + escaped(colHeading(sheet_, c)) + "</th>";
        html_ += "</tr>\n</thead>\n<tbody>\n";
        for (short r = 0; r < rows_; ++r) addRow(r);
        html_ += "</tbody>\n</table>\n</body>\n</html>\n";
        return std::move(html_);
    }

private:
    // A length of the sheet in widths of the font's 0.
    CString units(long length) const {
        const long hundredths = length * 100 / characterWidth_;
        const CString fraction = std::to_string(hundredths % 100 + 100);
        return std::to_string(hundredths / 100) + '.' + fraction.substr(1) + "ch";
    }

    CString colour(int value) const { return cssColour(sheet_.WinMapColour(value, /*monochrome=*/false)); }

    // The window's text colour, or its background colour where that reads better.
    CString colourOn(int ground) const {
        const auto distance = [this, ground](int value) {
            return std::abs(brightness(sheet_.WinMapColour(value, false)) -
                            brightness(sheet_.WinMapColour(ground, false)));
        };
        const int fore = sheet_.WinForeColourGet(), back = sheet_.WinBackColourGet();
        return colour(distance(fore) >= distance(back) ? fore : back);
    }

    CString fontFamily() const {
        CString face;
        for (const char c : font_.WinFontFaceGet())
            if (c == ' ' || c == '-' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'))
                face += c;
        return (face.empty() ? "" : '"' + face + "\",") + CString("\"DejaVu Sans Mono\",Consolas,Menlo,monospace");
    }

    void addVariable(const char* name, const CString& value) { html_ += CString("--") + name + ':' + value + ";\n"; }

    // What the sheet says of its look; kRules says how it is used.
    void addLook() {
        const int style = font_.WinFontStyleGet(), protect = sheet_.ShtSheetProtectColourGet();
        const CString slant = (style & WinFontItalic) != 0 ? "italic " : "";
        const CString weight = (style & WinFontBold) != 0 ? "bold " : "";
        html_ += ":root{\n";
        addVariable("font", slant + weight + std::to_string(font_.WinFontSizeGet()) + "pt/1.2 " + fontFamily());
        addVariable("height", units(sheet_.ShtRowSizeGet(-1)));
        addVariable("text", colour(sheet_.WinForeColourGet()));
        addVariable("ground", colour(sheet_.WinBackColourGet()));
        addVariable("lines",
                    sheet_.ShtSheetGridLinesGet() ? colour(sheet_.ShtSheetGridLinesColourGet()) : "transparent");
        addVariable("protected", colour(protect));
        addVariable("on-protected", colourOn(protect));
        addVariable("heading", colour(kHeadingColour));
        addVariable("on-heading", colourOn(kHeadingColour));
        addVariable("heading-lines", colour(kHeadingLineColour));
        addVariable("mark", colour(kMarkColour));
        html_ += "}\n";
        html_ += kRules;
    }

    void addRow(short r) {
        const short height = sheet_.ShtRowSizeGet(r);
        html_ += height == sheet_.ShtRowSizeGet(-1) ? "<tr>" : "<tr style=\"height:" + units(height) + "\">";
        html_ += "<th scope=\"row\">" + escaped(rowHeading(sheet_, r)) + "</th>";
        for (short c = 0; c < cols_; ++c) addCell(r, c);
        html_ += "</tr>\n";
    }

    void addCell(short r, short c) {
        const eShtCellAlign align = sheet_.ShtCellAlignGet(r, c);
        CString classes = align == ShtCellAlignLeft ? "" : align == ShtCellAlignCentre ? "c" : "r";
        if (sheet_.ShtCellProtectGet(r, c)) classes += classes.empty() ? "p" : " p";
        char mark = 0;
        int markValue = 0;
        sheet_.ShtCellMarkGet(r, c, mark, markValue);
        html_ += "<td";
        if (!classes.empty()) html_ += " class=\"" + classes + '"';
        if (mark != 0) html_ += " data-mark=\"" + escaped({&mark, 1}) + '"';
        html_ += '>' + escaped(cellText(sheet_, r, c)) + "</td>";
    }

    ShtSheet& sheet_;
    short rows_ = 0, cols_ = 0;
    WinFont font_;
    long characterWidth_ = 100;
    CString html_;
};

}  // namespace

CString sheetAsHtml(ShtSheet& sheet, const CString& title) { return Page(sheet).text(title); }

}  // namespace netlist
