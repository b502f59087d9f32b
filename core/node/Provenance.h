#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/node/NodeHome.h"
#include "core/node/NodeRelease.h"
#include "core/node/TreeListing.h"

namespace tarnik {

// The record of the installed files and of their origin: the file provenance.json beside the marker. The
// record shows later damage and changes. It doesn't protect against a program that can also rewrite the
// record.
//
// A value. The files that the node writes are outside the two recorded trees.
struct Provenance {
    static constexpr std::string_view fileName = "provenance.json";
    static constexpr std::size_t maxBytes = std::size_t{32} << 20;

    // One of the two installed folders. A Tree is empty if the folder was never recorded.
    struct Tree {
        std::string version;
        std::string archive;  // the SHA-256 of the unpacked archive; empty if the archive is unknown
        std::chrono::sys_seconds installed;
        std::string digest;  // the SHA-256 of the listing's text
        TreeListing listing;

        bool operator==(const Tree&) const = default;
    };

    std::string release;  // the package's release file as received
    std::string keyId;    // of the key that verified the release file
    std::string platform;
    Tree runtime;
    Tree package;

    static std::string pathIn(const NodeHome& home);

    // Returns std::nullopt if the file is missing, a link, too large or malformed.
    static std::optional<Provenance> read(const NodeHome& home);
    static std::optional<Provenance> parse(std::string_view json);

    // Replaces the file atomically, with mode 0600. Returns false on failure.
    bool write(const NodeHome& home) const;
    std::string json() const;

    bool operator==(const Provenance&) const = default;
};

// The result of a comparison of the installed helper with the record.
struct ProvenanceCheck {
    enum class Record {
        absent,      // the helper isn't installed, or an earlier version of this program installed it
        unreadable,  // the file is damaged or not a regular file
        unsigned_,   // the recorded release isn't signed with the key
        mismatch,    // the record contradicts the signed release, or a list of files differs from its digest
        good,
    };
    enum class TreeState {
        unchanged,
        changed,
        gone,           // the folder doesn't exist or can't be listed
        notRecorded,    // the record has no list of the folder
        unknownOrigin,  // unchanged since the folder was recorded, but the archive is unknown
    };
    struct Tree {
        std::string name;  // "Node.js" or "tarnik's helper"
        std::string folder;
        std::string version;
        TreeState state = TreeState::notRecorded;
        TreeDifferences differences;
    };

    Record record = Record::absent;
    std::string reason;       // for unsigned_ and mismatch: a part of a sentence
    std::vector<Tree> trees;  // empty unless the record is good

    // Blocks while both trees are read.
    static ProvenanceCheck of(const NodeHome& home, const std::optional<std::string>& publicKeyB64url,
                              const ReleaseCrypto& crypto);

    // Returns true if the record is good and both trees are unchanged since they were recorded.
    bool isGood() const;
};

}  // namespace tarnik
