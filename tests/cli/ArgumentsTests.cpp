#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cli/Arguments.h"
#include "cli/UsageError.h"

namespace tarn::cli {
namespace {

constexpr Option options[] = {
    {.name = "all", .letter = 'a'},
    {.name = "reverse", .letter = 'r'},
    {.name = "limit", .letter = 'n', .value = "N"},
    {.name = "in", .value = "DIR", .isRepeatable = true},
    {.name = "sort", .value = "name|size|modified"},
    {.name = "secret", .isHidden = true},
};

using Words = std::vector<std::string_view>;

Arguments parse(const Words& words, Arguments::Order order = Arguments::Order::any) {
    return Arguments::parse(words, options, {}, order);
}

/// Every option with its values, and the rest, in one line.
std::string summary(const Arguments& arguments) {
    std::string out;
    for (const Option& option : options) {
        for (const std::string_view value : arguments.values(option.name)) {
            out += std::string(option.name);
            if (option.takesValue()) out += "=" + std::string(value);
            out += ' ';
        }
    }
    for (const std::string_view word : arguments.rest()) out += "<" + std::string(word) + ">";
    return out;
}

TEST(Arguments, readsGNUOptions) {
    const struct {
        Words words;
        std::string_view summary;
    } cases[] = {
        {{}, ""},
        {{"--all", "x"}, "all <x>"},
        {{"x", "--all", "y"}, "all <x><y>"},  // options may follow arguments
        {{"-ar"}, "all reverse "},
        {{"-an5"}, "all limit=5 "},
        {{"-n", "5"}, "limit=5 "},
        {{"-n", "-5"}, "limit=-5 "},  // a value may begin with a dash
        {{"--limit=5"}, "limit=5 "},
        {{"--limit="}, "limit= "},
        {{"--limit", "--all"}, "limit=--all "},
        {{"--in=a=b", "--in", "c"}, "in=a=b in=c "},
        {{"--sort", "size"}, "sort=size "},
        {{"-", "--", "--all", "-a"}, "<-><--all><-a>"},
        {{"--all", "--", "--"}, "all <-->"},
        {{"\xff\n", "-a"}, "all <\xff\n>"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.summary);
        EXPECT_EQ(summary(parse(c.words)), c.summary);
    }
}

TEST(Arguments, refusesInSentencesThatHelp) {
    const struct {
        Words words;
        std::string_view sentence;
    } cases[] = {
        {{"--revers"}, "There is no option “--revers”. Did you mean “--reverse”?"},
        {{"--lmiit=3"}, "There is no option “--lmiit”. Did you mean “--limit”?"},
        {{"--rev"}, "There is no option “--rev”. Did you mean “--reverse”?"},
        {{"--colour"}, "There is no option “--colour”."},
        {{"--secrte"}, "There is no option “--secrte”."},  // hidden ones are not advertised
        {{"--a\n\xff"}, "There is no option “--a\\n\\xff”."},
        {{"-ax"}, "There is no option “-x”."},
        {{"--all=yes"}, "The option “--all” takes no value."},
        {{"--limit"}, "The option “--limit” needs a value, N."},
        {{"-n"}, "The option “-n” needs a value, N."},
        {{"-n1", "--limit=2"}, "The option “--limit” was given twice."},
        {{"--sort=siez"}, "The option “--sort” does not know “siez”. Did you mean “size”?"},
        {{"--sort=colour"},
         "The option “--sort” does not know “colour”. It takes name, size or modified."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sentence);
        try {
            parse(c.words);
            ADD_FAILURE() << "was accepted";
        } catch (const UsageError& error) {
            EXPECT_EQ(error.what(), c.sentence);
        }
    }
}

TEST(Arguments, theFirstArgumentEndsTheOptionsOfTheProgramItself) {
    const Words words = {"-a", "list", "--unknown"};
    const Arguments arguments = parse(words, Arguments::Order::optionsFirst);
    EXPECT_EQ(summary(arguments), "all <list><--unknown>");
    EXPECT_FALSE(arguments.wasEnded());
    EXPECT_TRUE(parse({"-a", "--", "list"}, Arguments::Order::optionsFirst).wasEnded());
}

TEST(Arguments, numbersAreWholeAndLargeEnough) {
    EXPECT_EQ(parse({"-n12"}).number("limit", 1), 12);
    EXPECT_EQ(parse({}).number("limit", 1), std::nullopt);
    for (const std::string_view text :
         {"0", "-1", "1.5", "12x", "", " 3", "99999999999999999999"}) {
        SCOPED_TRACE(text);
        const std::string word = "--limit=" + std::string(text);
        EXPECT_THROW(parse({word}).number("limit", 1), UsageError);
    }
}

}  // namespace
}  // namespace tarn::cli
