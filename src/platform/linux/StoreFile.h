// StoreFile.h - one file of the registry store: read afresh, changed under a lock.
#pragma once

#include <optional>
#include <string>

#include "platform/RegText.h"

namespace platform {

class StoreFile {
public:
    explicit StoreFile(std::string path) : m_path(std::move(path)) {}

    // The file as it stands; without one, an empty text. Nothing if it is there and can't be read.
    std::optional<RegText> Read() const;

    // Reads the file, lets change(text) alter it, and puts the outcome in the file's place in one
    // step, with the rights and, where this process may give them, the owner that the file had.
    // Other processes that change it wait meanwhile. False if change() says false or the file
    // can't be read, locked or written; it is then as it was.
    template <typename Change>
    bool Update(Change change) const {
        const Lock lock(*this);
        if (!lock.IsHeld()) return false;
        std::optional<RegText> text = Read();
        if (!text) return false;
        const std::string before = text->Contents();
        if (!change(*text)) return false;
        return text->Contents() == before || Replace(text->Contents());
    }

private:
    // Held by an open file beside the store, which only its owner may open: whoever may merely
    // read the store can't hold up those who write it.
    class Lock {
    public:
        explicit Lock(const StoreFile& store);
        ~Lock();
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;
        bool IsHeld() const { return m_file >= 0; }

    private:
        int m_file = -1;
    };

    bool Replace(const std::string& contents) const;

    std::string m_path;
};

}  // namespace platform
