#include <gtest/gtest.h>

#include "TarnCore/base/Text.h"
#include "TarnCore/index/readers/MailText.h"

namespace tarn {
namespace {

std::string withReturns(std::string_view text) { return Text::replacing(text, "\n", "\r\n"); }

TEST(MailText, headersAreDecoded) {
    const struct {
        const char* value;
        const char* text;
    } cases[] = {
        {"plain", "plain"},
        {"=?utf-8?Q?Gr=C3=BC=C3=9Fe_aus?= =?utf-8?q?_K=C3=B6ln?=", "Grüße aus Köln"},
        {"=?ISO-8859-1?B?R3L832U=?= an alle", "Grüße an alle"},
        {"a =?utf-8?B?w7w=?= b =?utf-8?B?w7Y=?= c", "a ü b ö c"},
        {"=?utf-8?B?5pel5g==?= =?utf-8?B?nKw=?=", "日本"},  // torn within a character
        {"=?utf-8*de?Q?=C3=BC?=", "ü"},
        {"=?koi8-r?B?8NLJ18XU?= =?utf-8?Q?!?=", "Привет!"},
        {"=?none?Q?=C3=BC?=", "ü"},
        {"=?utf-8?X?abc?= =?utf-8?Q?abc", "=?utf-8?X?abc?= =?utf-8?Q?abc"},
        {"Grüße", "Grüße"},
        {"", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value);
        EXPECT_EQ(MailText::decodedHeader(c.value), c.text);
    }
}

TEST(MailText, saysHeadersAndParts) {
    const struct {
        const char* name;
        std::string mail;
        const char* text;
    } cases[] = {
        {"plain",
         "Received: from x\nFrom: Anna <a@b.c>\nTo: =?utf-8?Q?J=C3=B6rg?=\nSubject: Hello\n"
         " there\nDate: Mon, 1 Jan 2024 10:00:00 +0100\n\nLine one\nLine two\n",
         "Subject: Hello there\nFrom: Anna <a@b.c>\nTo: Jörg\n"
         "Date: Mon, 1 Jan 2024 10:00:00 +0100\nLine one\nLine two"},
        {"quoted-printable",
         "From: a\nContent-Type: text/plain; charset=\"iso-8859-1\"\n"
         "Content-Transfer-Encoding: Quoted-Printable\n\nGr=FC=DFe und =\nmehr =3D 1=20\n",
         "From: a\nGrüße und mehr = 1"},
        {"base64", "From: a\nContent-Transfer-Encoding: base64\n\nR3LDvMOf\n ZQ==\n",
         "From: a\nGrüße"},
        {"no charset but bytes",
         "From: a\n\nGr\xFC\xDF"
         "e an alle",
         "From: a\nGrüße an alle"},
        {"alternatives",
         "From: a\nContent-Type: multipart/alternative;\n boundary=\"x y\"\n\npreamble\n--x y\n"
         "Content-Type: text/html\n\n<p>the <b>page</b></p>\n--x y\nContent-Type: text/plain\n\n"
         "the text\n--x y--\nepilogue",
         "From: a\nthe text"},
        {"an empty alternative",
         "From: a\nContent-Type: multipart/alternative; boundary=x\n\n--x\n\n \n--x\n"
         "Content-Type: text/html; charset=windows-1252\n\n<p>100 \x80</p>\n--x--\n",
         "From: a\n100 €"},
        {"attachments",
         "From: a\nContent-Type: multipart/mixed; boundary=x\n\n--x\n\nbody\n--x\n"
         "Content-Type: text/plain\nContent-Disposition: Attachment; filename=a.txt\n\nattached\n"
         "--x\nContent-Type: image/png\nContent-Transfer-Encoding: base64\n\niVBORw0K\n--x--\n",
         "From: a\nbody"},
        {"parts within parts",
         "From: a\nContent-Type: multipart/mixed; boundary=x\n\n--x\n"
         "Content-Type: multipart/related; boundary=xx\n\n--xx\n\none\n--xx--\n--x\n\ntwo\n",
         "From: a\none\ntwo"},
        {"a mail within the mail",
         "From: a\nContent-Type: message/rfc822\n\nSubject: inner\nFrom: b\n\ntext\n",
         "From: a\nSubject: inner\nFrom: b\ntext"},
        {"a line of a mailbox", "From a@b Mon Jan 1\nSubject: s\n\ntext", "Subject: s\ntext"},
        {"no body", "Subject: s\nFrom: a", "Subject: s\nFrom: a"},
        {"no boundary", "From: a\nContent-Type: multipart/mixed\n\nbody", "From: a"},
        {"no mail", "Only some text: here\n\nand more", "Only some text: here\n\nand more"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(MailText::read(c.mail), c.text);
        if (std::string_view(c.name) != "no mail") {
            EXPECT_EQ(MailText::read(withReturns(c.mail)), c.text) << "with returns";
        }
    }
}

TEST(MailText, isFoundBetweenItsLengthAndItsList) {
    const std::string mail = "From: a\n\nbody\n";
    EXPECT_EQ(MailText::readWithLength(std::to_string(mail.size()) + "  \n" + mail +
                                       "<?xml version=\"1.0\"?><plist>flags</plist>"),
              "From: a\nbody");
    EXPECT_EQ(MailText::readWithLength(mail), "From: a\nbody");
    EXPECT_EQ(MailText::readWithLength("99999999999999999999\n" + mail), "From: a\nbody");
}

TEST(MailText, endsHoweverDeepItNests) {
    std::string nested = "From: a\n";
    for (int i = 0; i < 10'000; ++i) nested += "Content-Type: message/rfc822\n\nFrom: b\n";
    EXPECT_TRUE(MailText::read(nested));

    std::string itself = "From: a\nContent-Type: multipart/mixed; boundary=x\n\n";
    for (int i = 0; i < 50'000; ++i) itself += "--x\nContent-Type: multipart/mixed; boundary=x\n\n";
    EXPECT_EQ(MailText::read(itself + "text"), "From: a");

    std::string dashes =
        "From: a\nContent-Type: multipart/mixed; boundary=" + std::string(200, '-') + "\n\n";
    EXPECT_EQ(MailText::read(dashes + std::string(1'000'000, '-')), "From: a");
}

}  // namespace
}  // namespace tarn
