// The files the simulated tools write and read: objects (also what a
// partial link writes), archives and images. Objects and images are short
// text files, so a test or a curious user can read them; the first line is
// the magic that tells ours from anything else, and "end" closes them, so a
// cut-off file is noticed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "markers.h"

namespace fakeads {

constexpr char kObjectMagic[] = "FAKEADS-OBJECT 1";
constexpr char kArchiveMagic[] = "FAKEADS-ARCHIVE 1";
constexpr char kImageMagic[] = "FAKEADS-IMAGE 1";

struct Dependency {
    std::string path;  // as the tool found it
    uint64_t hash = 0; // of its contents at the time
};

struct LinkMessage {
    MarkerKind kind = MarkerKind::kLinkError;  // kLinkWarning, kLinkError or kLinkFatal
    std::string text;
};

struct ObjectFile {
    std::string tool;                      // armcc, armasm, armlink (partial link) ...
    std::string source;                    // as spelled on the tool's command line
    std::string state = "arm";             // arm or thumb
    std::string byte_order = "little";
    std::vector<std::string> attributes;   // "cpu ARM920T", "apcs /interwork", "debug on" ...
    std::vector<std::string> defines;      // NAME or NAME=VALUE, -D and -PD alike
    std::vector<Dependency> dependencies;  // the source first, then what it includes
    std::vector<std::string> symbols;      // global definitions
    std::vector<LinkMessage> link_messages;
    uint32_t code_size = 0;
};

std::string WriteObject(const ObjectFile& object);
// False when the text is not a whole object of ours.
bool ReadObject(const std::string& text, ObjectFile* object);

struct ArchiveMember {
    std::string name;
    std::string data;
};

std::string WriteArchive(const std::vector<ArchiveMember>& members);
bool ReadArchive(const std::string& text, std::vector<ArchiveMember>* members);

struct ImageSymbol {
    uint32_t address = 0;
    std::string name;
    std::string object;
};

struct ImageRegion {
    std::string name;  // ER_RO, ER_RW
    uint32_t base = 0;
    uint32_t size = 0;
    uint64_t seed = 0; // the contents are drawn from it (ImageBytes)
};

struct ImageFile {
    std::string byte_order = "little";
    uint32_t entry = 0;
    std::vector<std::string> attributes;  // "ropi", "rwpi", "reloc", "split"
    std::vector<Dependency> objects;      // the inputs with their contents' hash
    std::vector<ImageSymbol> symbols;
    std::vector<ImageRegion> regions;
    bool debug = true;
};

std::string WriteImage(const ImageFile& image);
bool ReadImage(const std::string& text, ImageFile* image);

// The contents of a region: the same bytes for the same seed on every host.
std::string ImageBytes(const ImageRegion& region);

}  // namespace fakeads
