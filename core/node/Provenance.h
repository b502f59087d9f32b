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

// The record of what an install put into the node home, and of its origin: the file provenance.json beside
// the marker. It shows later damage and changes. It doesn't protect against a program that can also rewrite
// it.
//
// A value. The files that the node writes are outside the two recorded trees.
struct Provenance {
    static constexpr std::string_view fileName = "provenance.json";
    static constexpr std::size_t maxBytes = std::size_t{32} << 20;

    // One of the two installed folders. It is empty if the folder was never recorded.
    struct Tree {
        std::string version;
        std::string archive;  // the SHA-256 of the unpacked archive; empty if another program installed it
        std::chrono::sys_seconds installed;
        std::string digest;  // the SHA-256 of the listing's text
        TreeListing listing;

        bool operator==(const Tree&) const = default;
    };

    std::string release;  // the release file as received, of the package
    std::string keyId;    // of the key that verified it
    std::string platform;
    Tree runtime;
    Tree package;

    static std::string pathIn(const NodeHome& home);

    // Returns std::nullopt if there is no such file, or if it is a link, too large or malformed.
    static std::optional<Provenance> read(const NodeHome& home);
    static std::optional<Provenance> parse(std::string_view json);

    // Replaces the file atomically, with mode 0600. Returns false on failure.
    bool write(const NodeHome& home) const;
    std::string json() const;

    bool operator==(const Provenance&) const = default;
};

// The result of a comparison of the installed helper with its record. Blocks while both trees are read.
struct ProvenanceCheck {
    enum class Record {
        absent,      // the helper isn't installed, or was installed by an earlier version
        unreadable,  // the file is damaged or not a regular file
        unsigned_,   // the recorded release isn't signed with the key
        mismatch,    // the record contradicts the signed release, or a list of files its digest
        good,
    };
    enum class TreeState {
        unchanged,
        changed,
        gone,           // the folder doesn't exist
        notRecorded,    // nothing is known about it
        unknownOrigin,  // unchanged since it was recorded, but an earlier program installed it
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

    static ProvenanceCheck of(const NodeHome& home, const std::optional<std::string>& publicKeyB64url,
                              const ReleaseCrypto& crypto);

    // Returns true if the record is good and both trees are unchanged.
    bool isGood() const;
};

}  // namespace tarnik
