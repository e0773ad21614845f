#include "linker_listings.h"

#include <cstdio>

#include "paths.h"

namespace fakeads {
namespace {

std::string Format(const char* format, unsigned a, unsigned b, unsigned c, unsigned d, unsigned e,
                   const std::string& name) {
    char text[128];
    std::snprintf(text, sizeof text, format, a, b, c, d, e);
    return text + name + "\n";
}

const char kSizeHeader[] = "      Code    RO Data    RW Data    ZI Data      Debug   ";

// The object a symbol comes from, matched by the order of the inputs.
bool IsThumb(const ImageSymbol& symbol, const ImageFile& image, const std::vector<ObjectFile>& objects) {
    for (size_t i = 0; i < image.objects.size() && i < objects.size(); ++i) {
        if (image.objects[i].path == symbol.object) return objects[i].state == "thumb";
    }
    return false;
}

uint32_t RegionSize(const ImageFile& image, const std::string& name) {
    for (const ImageRegion& region : image.regions) {
        if (region.name == name) return region.size;
    }
    return 0;
}

}  // namespace

std::string InfoListing(const std::string& topics, const ImageFile& image, const std::vector<ObjectFile>& objects) {
    std::string listing;
    size_t start = 0;
    while (start <= topics.size()) {
        size_t end = topics.find(',', start);
        if (end == std::string::npos) end = topics.size();
        const std::string topic = ads::platform::Lower(topics.substr(start, end - start));
        start = end + 1;
        const unsigned debug = image.debug ? 64u : 0u;
        if (topic == "sizes") {
            listing += "Image component sizes\n\n" + std::string(kSizeHeader) + "Object Name\n\n";
            for (size_t i = 0; i < objects.size() && i < image.objects.size(); ++i) {
                listing += Format("%10u %10u %10u %10u %10u   ", objects[i].code_size, 0, 4, 0, debug,
                                  FileName(image.objects[i].path));
            }
            listing += "\n";
        } else if (topic == "totals") {
            const unsigned code = RegionSize(image, "ER_RO");
            const unsigned data = RegionSize(image, "ER_RW");
            listing += std::string(kSizeHeader) + "\n\n";
            listing += Format("%10u %10u %10u %10u %10u   ", code, 0, data, 0,
                              debug * static_cast<unsigned>(objects.size()), "Object Totals");
            listing += Format("%10u %10u %10u %10u %10u   ", 0, 0, 0, 0, 0, "Library Totals");
            listing += "\n";
            char totals[256];
            std::snprintf(totals, sizeof totals,
                          "    Total RO  Size(Code + RO Data)               %10u\n"
                          "    Total RW  Size(RW Data + ZI Data)            %10u\n"
                          "    Total ROM Size(Code + RO Data + RW Data)     %10u\n\n",
                          code, data, code + data);
            listing += totals;
        } else if (topic == "unused") {
            listing += "Removing Unused input sections from the image.\n\n"
                       "    0 unused section(s) (total 0 bytes) removed from the image.\n\n";
        } else if (topic == "veneers") {
            listing += "No veneers were needed.\n\n";
        } else if (topic == "interwork") {
            listing += "No interworking calls.\n\n";
        }
    }
    return listing;
}

std::string MapListing(const ImageFile& image) {
    std::string listing = "Memory Map of the image\n\n  Image Entry point : " + Hex32(image.entry) + "\n\n";
    for (const ImageRegion& region : image.regions) {
        listing += "    Execution Region " + region.name + " (Base: " + Hex32(region.base) +
                   ", Size: " + Hex32(region.size) + ", Max: 0xffffffff, ABSOLUTE)\n\n";
    }
    return listing;
}

std::string SymbolListing(const ImageFile& image, const std::vector<ObjectFile>& objects) {
    std::string listing = "Image Symbol Table\n\n    Global Symbols\n\n"
                          "    Symbol Name                              Value     Ov Type        Object\n\n";
    for (const ImageSymbol& symbol : image.symbols) {
        char line[256];
        std::snprintf(line, sizeof line, "    %-40s %s   %-10s  %s\n", symbol.name.c_str(), Hex32(symbol.address).c_str(),
                      IsThumb(symbol, image, objects) ? "Thumb Code" : "ARM Code", FileName(symbol.object).c_str());
        listing += line;
    }
    return listing + "\n";
}

std::string SymdefsFile(const std::string& banner, const std::string& date, const ImageFile& image,
                        const std::vector<ObjectFile>& objects) {
    std::string text = "#<SYMDEFS># " + banner + ": Last Updated: " + date + "\n";
    for (const ImageSymbol& symbol : image.symbols) {
        text += Hex32(symbol.address) + (IsThumb(symbol, image, objects) ? " T " : " A ") + symbol.name + "\n";
    }
    return text;
}

std::string CallGraph(const std::string& image_name, const ImageFile& image) {
    std::string html = "<html><head><title>Static Call Graph - [" + image_name + "]</title></head><body>\n";
    html += "<h1>Static Call Graph for image " + image_name + "</h1>\n<ul>\n";
    for (const ImageSymbol& symbol : image.symbols) {
        html += "<li>" + symbol.name + " (" + Hex32(symbol.address) + ")</li>\n";
    }
    return html + "</ul>\n</body></html>\n";
}

}  // namespace fakeads
