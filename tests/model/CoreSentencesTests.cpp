#include <cerrno>

#include <gtest/gtest.h>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/records/ListError.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/ArchiveError.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/ListingError.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/Subject.h"
#include "TarnCore/ops/TransferWords.h"
#include "TarnCore/rename/BatchRenamer.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

constexpr int errnums[] = {EPERM,  EACCES, ENOENT,       EBUSY,  EEXIST, ENOSPC,   EROFS,
                           EDQUOT, EIO,    ENAMETOOLONG, EMFILE, ELOOP,  ENOTCONN, ESTALE};

/// The sentence of the failure.
template <class Function>
std::string refusal(Function&& function) {
    try {
        function();
    } catch (const Error& error) {
        return error.what();
    }
    return "nothing was refused";
}

std::vector<URL> named(std::initializer_list<const char*> names) {
    std::vector<URL> urls;
    for (const char* name : names) urls.push_back(URL::fromPath("/folder").appending(name));
    return urls;
}

/// What the core says, made by itself.
std::vector<std::string> sentences() {
    std::vector<std::string> all;
    const auto add = [&all](auto... more) { (all.emplace_back(std::move(more)), ...); };
    for (const int errnum : errnums) {
        // Those two in the C library's words.
        if (errnum != EBUSY && errnum != EEXIST) add(systemErrorSentence(errnum));
        for (const char* verb : {"move “a. b.txt”", "copy “because the disk is full.”", "remove it",
                                 "change tags on “x”", "rename the files", "unpack “x.zip”"})
            add(FileOps::friendly(errnum, verb));
    }

    const TestFolder folder;
    folder.file("taken");
    const URL there = folder.file("there");
    const URL gone = folder / "gone";
    add(refusal([&] { FileOps::rename(there, "taken"); }),
        refusal([&] { FileOps::rename(there, ""); }),
        refusal([&] { FileOps::rename(there, "a/b"); }),
        refusal([&] { FileOps::rename(gone, "x"); }), refusal([&] { FileOps::duplicate(gone); }),
        refusal([&] { FileOps::trash(gone); }), refusal([&] { FileOps::setTags({}, gone); }),
        refusal([&] { FileOps::createFolder(gone, "x"); }),
        refusal([&] { FileOps::createFolder({folder.url()}, folder.url(), "x"); }));
    for (const RenamePreview& preview : BatchRenamer::preview(
             {there}, {RenameRule{RenameRule::Replace{.find = "there", .with = "taken"}}}, false))
        add(preview.problem.value_or("no problem"));

    const auto one = named({"a"});
    const auto two = named({"a", "b and c"});
    const auto several = named({"a", "“b”, “c”", "c", "d", "e"});
    const URL place = URL::fromPath("/folder/to “x”");
    for (const auto& items : {one, two, several}) {
        for (const auto kind : {TransferKind::copy, TransferKind::move, TransferKind::trash})
            add(TransferWords::title(kind, items, place));
        add(TransferWords::alreadyDone(TransferKind::move, place, items, items),
            TransferWords::alreadyDone(TransferKind::trash, {}, items, {}),
            TransferWords::attributesLost(items), "Duplicate " + Subject::of(items),
            "Extract " + Subject::of(items) + " from “b.zip”",
            "Tag " + Subject::of(items) + " with “x”");
    }
    add(TransferWords::changed("copy “a”"), TransferWords::notCopyable("move “a”"),
        TransferWords::notWrittenOut(place),
        "Copied “a” but couldn’t remove the original. " + FileOps::friendly(EROFS, "remove it"));
    for (const double seconds : {0.0, 7.0, 300.0, 8000.0}) add(Format::timeRemaining(seconds));
    add(Format::timeRemaining(std::nullopt));

    add(ListingError::notFound("x").what(), ListingError::permissionDenied("x").what(),
        ListingError::notAFolder("x").what());
    add(ArchiveError::damaged().what(), ArchiveError::incomplete().what(),
        ArchiveError::encrypted().what(), ArchiveError::leadsOut("../x").what(),
        ArchiveError::unsupported().what(), ArchiveError::cancelled().what(),
        ArchiveError::fromLibrary("Unsupported method").what());
    for (const char* kind : {"smart folder", "workspace"})
        add(ListError::emptyName(kind).what(), ListError::nameTaken(kind, "x").what());
    add(ListError::emptyQuery().what());
    return all;
}

TEST(CoreSentences, areAllKnownAndReadTheSameInEnglish) {
    for (const std::string& sentence : sentences()) {
        SCOPED_TRACE(sentence);
        EXPECT_TRUE(isCoreSentence(sentence));
        EXPECT_EQ(coreSentence(sentence), displayText(sentence));
    }
}

TEST(CoreSentences, leaveWhatTheyDoNotKnowAsItIs) {
    const struct {
        const char* english;
        bool isKnown;
    } cases[] = {
        {"", true},
        {"Couldn’t eject “Stick”. target is busy.", false},
        {"umount: /mnt: not mounted", false},
        {"Copy that", false},
        {"Rename “3 items” to “Copy “a” to “b””", true},
        {"Rename %1 to %2", false},
        {"Couldn’t sing because the disk is full.", false},
        {"Rename “a\nb” to “%2”", true},
        {"12 apples", false},
        {"999999999999999999999 items", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.english);
        EXPECT_EQ(isCoreSentence(c.english), c.isKnown);
        EXPECT_EQ(coreSentence(c.english), displayText(c.english));
    }
}

}  // namespace
}  // namespace tarn
