#include "TarnCore/preview/CodeLanguage.h"

#include <algorithm>
#include <string>

#include "TarnCore/base/Text.h"
#include "TarnCore/base/URL.h"

namespace tarn {
namespace {

using Form = CodeLanguage::Form;
using String = CodeLanguage::String;

constexpr String cStrings[] = {{"\"", "\""}, {"'", "'"}};
constexpr String cppStrings[] = {{"R\"(", ")\"", false, true}, {"\"", "\""}, {"'", "'"}};
constexpr String javaStrings[] = {{"\"\"\"", "\"\"\"", true, true}, {"\"", "\""}, {"'", "'"}};
constexpr String scriptStrings[] = {{"\"", "\""}, {"'", "'"}, {"`", "`", true, true}};
constexpr String goStrings[] = {{"\"", "\""}, {"'", "'"}, {"`", "`", false, true}};
constexpr String pythonStrings[] = {
    {"\"\"\"", "\"\"\"", true, true}, {"'''", "'''", true, true}, {"\"", "\""}, {"'", "'"}};
/// A lone quote is a lifetime or part of a name there.
constexpr String doubleQuoted[] = {{"\"", "\"", true, true}};
constexpr String shellStrings[] = {{"\"", "\"", true, true}, {"'", "'", false, true}};
constexpr String sqlStrings[] = {{"'", "'", false, true}, {"\"", "\"", false}};
constexpr String luaStrings[] = {{"[[", "]]", false, true}, {"\"", "\""}, {"'", "'"}};
constexpr String plainQuotes[] = {{"\"", "\""}, {"'", "'", false}};
constexpr String tomlStrings[] = {
    {"\"\"\"", "\"\"\"", true, true}, {"'''", "'''", false, true}, {"\"", "\""}, {"'", "'", false}};
constexpr String oneString[] = {{"\"", "\""}};

constexpr CodeLanguage languages[] = {
    {.name = "C",
     .suffixes = "c h",
     .keywords = "auto break case const continue default do else enum extern for goto if inline "
                 "register restrict return sizeof static struct switch typedef union volatile "
                 "while _Alignas _Alignof _Atomic _Generic _Noreturn _Static_assert",
     .values = "NULL bool char double false float int long short signed true unsigned void size_t "
               "ssize_t int8_t int16_t int32_t int64_t uint8_t uint16_t uint32_t uint64_t FILE",
     .lineComments = {"//"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = cStrings,
     .directive = '#'},
    {.name = "C++",
     .suffixes = "cpp cc cxx hpp hh hxx ipp mm ino cu",
     .keywords =
         "alignas alignof and asm auto break case catch class co_await co_return co_yield concept "
         "const const_cast consteval constexpr constinit continue decltype default delete do "
         "dynamic_cast else enum explicit export extern final for friend goto if import inline "
         "module mutable namespace new noexcept not operator or override private protected public "
         "register reinterpret_cast requires return sizeof static static_assert static_cast "
         "struct switch template this thread_local throw try typedef typeid typename union using "
         "virtual volatile while",
     .values = "bool char char8_t char16_t char32_t double false float int long nullptr short "
               "signed true unsigned void wchar_t std size_t int8_t int16_t int32_t int64_t "
               "uint8_t uint16_t uint32_t uint64_t NULL",
     .lineComments = {"//"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = cppStrings,
     .directive = '#'},
    {.name = "Objective-C",
     .suffixes = "m",
     .keywords = "break case const continue default do else enum extern for goto if inline return "
                 "self sizeof static struct super switch typedef union while in out",
     .values = "BOOL NO NULL YES bool char double float id instancetype int long nil short void",
     .lineComments = {"//"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = cStrings,
     .directive = '#'},
    {.name = "Java",
     .suffixes = "java",
     .keywords =
         "abstract assert break case catch class continue default do else enum extends final "
         "finally for if implements import instanceof interface native new package private "
         "protected public record return sealed static strictfp super switch synchronized this "
         "throw throws transient try var volatile while yield",
     .values = "boolean byte char double false float int long null short true void String Object",
     .lineComments = {"//"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = javaStrings,
     .directive = '@'},
    {.name = "Kotlin",
     .suffixes = "kt kts",
     .keywords = "abstract as break by catch class companion const continue data do else enum "
                 "final finally for fun if import in init inline interface internal is lateinit "
                 "object open operator out override package private protected public return "
                 "sealed suspend super this throw try typealias val var when where while",
     .values = "Any Boolean Byte Char Double Float Int List Long Map Nothing Short String Unit "
               "false null true",
     .lineComments = {"//"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = javaStrings,
     .nestsComments = true,
     .directive = '@'},
    {.name = "Swift",
     .suffixes = "swift",
     .keywords =
         "actor as associatedtype async await break case catch class continue default defer deinit "
         "do else enum extension fallthrough fileprivate final for func guard if import in "
         "indirect "
         "infix init inout internal is lazy let mutating nonisolated open operator override "
         "postfix prefix private protocol public repeat required rethrows return self Self some "
         "static struct subscript super switch throw throws try typealias unowned var weak where "
         "while",
     .values = "Any Array Bool Character Dictionary Double Float Int Set String UInt Void false "
               "nil true",
     .lineComments = {"//"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = javaStrings,
     .nestsComments = true,
     .directive = '@'},
    {.name = "C#",
     .suffixes = "cs",
     .keywords =
         "abstract as async await base break case catch checked class const continue default "
         "delegate do else enum event explicit extern finally fixed for foreach get goto if "
         "implicit in init interface internal is lock namespace new operator out override params "
         "partial private protected public readonly record ref return sealed set sizeof stackalloc "
         "static struct switch this throw try typeof unchecked unsafe using value var virtual "
         "volatile when where while yield",
     .values = "bool byte char decimal double dynamic false float int long null object sbyte "
               "short string true uint ulong ushort void",
     .lineComments = {"//"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = javaStrings,
     .directive = '#'},
    {.name = "JavaScript",
     .suffixes = "js mjs cjs jsx ts tsx mts cts vue svelte",
     .keywords =
         "abstract any as async await break case catch class const continue debugger declare "
         "default delete do else enum export extends finally for from function get if implements "
         "import in infer instanceof interface keyof let namespace new of private protected public "
         "readonly return satisfies set static super switch this throw try type typeof var void "
         "while with yield",
     .values = "Array Infinity Map NaN Object Promise Set boolean console document false never "
               "null number string true undefined unknown window",
     .lineComments = {"//"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = scriptStrings,
     .directive = '@'},
    {.name = "Go",
     .suffixes = "go",
     .keywords = "break case chan const continue default defer else fallthrough for func go goto "
                 "if import interface map package range return select struct switch type var",
     .values = "any append bool byte cap close complex64 complex128 copy delete error false "
               "float32 float64 int int8 int16 int32 int64 iota len make new nil panic recover "
               "rune string true uint uint8 uint16 uint32 uint64 uintptr",
     .lineComments = {"//"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = goStrings},
    {.name = "Rust",
     .suffixes = "rs",
     .keywords = "as async await break const continue crate dyn else enum extern fn for if impl in "
                 "let loop match mod move mut pub ref return self Self static struct super trait "
                 "type union unsafe use where while",
     .values = "Box Err None Ok Option Result Some String Vec bool char f32 f64 false i8 i16 i32 "
               "i64 i128 isize str true u8 u16 u32 u64 u128 usize",
     .lineComments = {"//"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = doubleQuoted,
     .nestsComments = true,
     .directive = '#'},
    {.name = "Python",
     .suffixes = "py pyw pyi sconstruct wscript",
     .keywords = "and as assert async await break case class continue def del elif else except "
                 "finally for from global if import in is lambda match nonlocal not or pass raise "
                 "return try while with yield",
     .values = "Exception False None True bool bytes dict float int len list object open print "
               "range self set str super tuple",
     .lineComments = {"#"},
     .strings = pythonStrings,
     .directive = '@'},
    {.name = "Ruby",
     .suffixes = "rb gemfile rakefile podfile gemspec",
     .keywords = "alias and begin break case class def do else elsif end ensure for if in "
                 "include module next not or private protected public raise redo require rescue "
                 "retry return self super then undef unless until when while yield",
     .values = "attr_accessor attr_reader false nil puts true",
     .lineComments = {"#"},
     .blockOpen = "=begin",
     .blockClose = "=end",
     .strings = plainQuotes},
    {.name = "PHP",
     .suffixes = "php",
     .keywords =
         "abstract and array as break case catch class clone const continue declare default do "
         "echo else elseif enum extends final finally fn for foreach function global if implements "
         "include include_once instanceof interface match namespace new or print private protected "
         "public readonly require require_once return static switch throw trait try use var while "
         "yield",
     .values = "bool false float int mixed null self string this true void",
     .lineComments = {"//", "#"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = cStrings,
     .ignoresCase = true},
    {.name = "Perl",
     .suffixes = "pl pm t",
     .keywords = "die do each else elsif eval exit for foreach goto if keys last local my next no "
                 "our package print printf push redo require return shift sub undef unless until "
                 "use values wantarray warn while",
     .lineComments = {"#"},
     .strings = plainQuotes},
    {.name = "Lua",
     .suffixes = "lua",
     .keywords = "and break do else elseif end for function goto if in local not or repeat return "
                 "then until while",
     .values = "false nil true self ipairs pairs print require",
     .lineComments = {"--"},
     .blockOpen = "--[[",
     .blockClose = "]]",
     .strings = luaStrings},
    {.name = "Shell",
     .suffixes = "sh bash zsh fish ksh profile bashrc zshrc bash_profile pkgbuild env",
     .keywords = "break case continue do done elif else esac eval exec exit export fi for function "
                 "if in local readonly return select set shift source then trap unset until while",
     .values = "cat cd cp echo false grep mkdir mv printf pwd read rm sed test true",
     .lineComments = {"#"},
     .strings = shellStrings},
    {.name = "SQL",
     .suffixes = "sql",
     .keywords =
         "add all alter and as asc begin between by case cascade check column commit constraint "
         "create cross database default delete desc distinct drop else end exists explain foreign "
         "from full group having if in index inner insert into is join key left like limit not "
         "null offset on or order outer primary references replace returning right rollback select "
         "set table then transaction trigger union unique update using values view when where with",
     .values = "bigint blob boolean char date decimal double false float int integer numeric real "
               "serial text time timestamp true varchar",
     .lineComments = {"--"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = sqlStrings,
     .ignoresCase = true},
    {.name = "R",
     .suffixes = "r",
     .keywords = "break else for function if in library next repeat require return while",
     .values = "FALSE Inf NA NULL NaN TRUE",
     .lineComments = {"#"},
     .strings = plainQuotes},
    {.name = "Scala",
     .suffixes = "scala gradle groovy",
     .keywords =
         "abstract case catch class def do else enum export extends extension final finally for "
         "given if implicit import lazy match new object override package private protected return "
         "sealed super then this throw trait try type using val var while with yield",
     .values = "Boolean Double Int List Long Map Option String Unit false null true",
     .lineComments = {"//"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = javaStrings,
     .directive = '@'},
    {.name = "Dart",
     .suffixes = "dart",
     .keywords =
         "abstract as assert async await base break case catch class const continue covariant "
         "default deferred do else enum export extends extension external factory final finally "
         "for get if implements import in interface is late library mixin new on operator part "
         "required rethrow return sealed set static super switch sync this throw try typedef var "
         "when while with yield",
     .values = "Future List Map Set String bool double dynamic false int null num true void",
     .lineComments = {"//"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = pythonStrings,
     .directive = '@'},
    {.name = "Haskell",
     .suffixes = "hs elm",
     .keywords = "as case class data default deriving do else forall foreign hiding if import in "
                 "infix infixl infixr instance let module newtype of qualified then type where",
     .values = "Bool Char Double False Int Integer Just Maybe Nothing String True",
     .lineComments = {"--"},
     .blockOpen = "{-",
     .blockClose = "-}",
     .strings = oneString,
     .nestsComments = true},
    {.name = "Elixir",
     .suffixes = "ex exs erl",
     .keywords = "after and case catch cond def defimpl defmacro defmodule defp defprotocol "
                 "defstruct do else end fn for if import in not or quote raise receive require "
                 "rescue try unless use when with",
     .values = "false nil true",
     .lineComments = {"#", "%"},
     .strings = pythonStrings,
     .directive = '@'},
    {.name = "Clojure",
     .suffixes = "clj cljs edn el lisp scm",
     .keywords = "def defmacro defmethod defn defprotocol defrecord defun do doseq fn for if "
                 "if-let import lambda let loop ns recur require setq use when",
     .values = "false nil t true",
     .lineComments = {";"},
     .strings = doubleQuoted},
    {.name = "Zig",
     .suffixes = "zig nim jl v",
     .keywords =
         "and begin break catch comptime const continue defer do else elseif end enum errdefer "
         "error export extern fn for func function if import in inline let macro module mutable "
         "or orelse packed proc pub return struct switch test try type union unreachable using "
         "var while",
     .values = "bool false f32 f64 i32 i64 int nothing null string true u8 u16 u32 u64 undefined "
               "usize void",
     .lineComments = {"//", "#"},
     .strings = cStrings},
    {.name = "Protocol Buffers",
     .suffixes = "proto graphql gql thrift",
     .keywords = "enum extend extends extensions fragment implements import input interface "
                 "message mutation oneof option optional package query repeated required reserved "
                 "returns rpc scalar schema service subscription syntax type union",
     .values = "Boolean Float ID Int String bool bytes double false fixed32 fixed64 float int32 "
               "int64 map string true uint32 uint64",
     .lineComments = {"//", "#"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = oneString},
    {.name = "CMake",
     .suffixes = "cmake cmakelists.txt",
     .keywords =
         "add_custom_command add_custom_target add_executable add_library add_subdirectory "
         "add_test cmake_minimum_required else elseif endforeach endfunction endif endmacro "
         "endwhile file find_library find_package foreach function if include install list macro "
         "message option project return set set_target_properties string "
         "target_compile_definitions target_compile_options target_include_directories "
         "target_link_libraries unset while",
     .values =
         "AND FALSE FATAL_ERROR INTERFACE NOT OFF ON OR PRIVATE PUBLIC REQUIRED STATIC STATUS "
         "STREQUAL TARGET TRUE",
     .lineComments = {"#"},
     .blockOpen = "#[[",
     .blockClose = "]]",
     .strings = doubleQuoted},
    {.name = "Make",
     .suffixes = "make mk makefile gnumakefile",
     .keywords = "define else endef endif export ifdef ifeq ifndef ifneq include override unexport "
                 "vpath",
     .lineComments = {"#"},
     .strings = plainQuotes},
    {.name = "Dockerfile",
     .suffixes = "dockerfile containerfile",
     .keywords = "add arg as cmd copy entrypoint env expose from healthcheck label maintainer "
                 "onbuild run shell stopsignal user volume workdir",
     .lineComments = {"#"},
     .strings = plainQuotes,
     .ignoresCase = true},
    {.name = "TeX", .suffixes = "tex sty cls bib", .lineComments = {"%"}, .directive = '\\'},
    {.name = "HTML",
     .suffixes = "html htm xhtml xml svg plist xsd xsl rss atom kml gpx ui qrc xaml csproj "
                 "fodt fods opml",
     .form = Form::markup,
     .blockOpen = "<!--",
     .blockClose = "-->"},
    {.name = "CSS",
     .suffixes = "css scss sass less",
     .form = Form::style,
     .values = "auto block flex grid important inherit initial inline none normal unset",
     .lineComments = {"//"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = cStrings,
     .directive = '@'},
    {.name = "JSON",
     .suffixes = "json jsonc geojson webmanifest code-workspace",
     .form = Form::json,
     .values = "false null true",
     .lineComments = {"//"},
     .blockOpen = "/*",
     .blockClose = "*/",
     .strings = oneString},
    {.name = "YAML",
     .suffixes = "yml yaml",
     .form = Form::keyed,
     .values = "false no null off on true yes",
     .lineComments = {"#"},
     .strings = plainQuotes},
    {.name = "TOML",
     .suffixes = "toml",
     .form = Form::keyed,
     .values = "false inf nan true",
     .lineComments = {"#"},
     .strings = tomlStrings},
    {.name = "INI",
     .suffixes = "ini conf cfg desktop service timer socket properties editorconfig gitconfig "
                 "gitattributes npmrc",
     .form = Form::keyed,
     .values = "false no off on true yes",
     .lineComments = {"#", ";"}},
    {.name = "Markdown", .suffixes = "md markdown mdx rst adoc org", .form = Form::markdown},
    {.name = "Patch", .suffixes = "diff patch", .form = Form::patch},
};

bool hasWord(std::string_view list, std::string_view word) {
    if (word.empty() || word.find(' ') != word.npos) return false;
    for (std::size_t at = list.find(word); at != list.npos; at = list.find(word, at + 1)) {
        const std::size_t end = at + word.size();
        if ((at == 0 || list[at - 1] == ' ') && (end == list.size() || list[end] == ' '))
            return true;
    }
    return false;
}

const CodeLanguage* withSuffix(std::string_view suffix) {
    const auto found = std::ranges::find_if(languages, [suffix](const CodeLanguage& language) {
        return hasWord(language.suffixes, suffix);
    });
    return found == std::end(languages) ? nullptr : &*found;
}

/// The program that the first line of a script names: "#!/usr/bin/env python3 -u" is "python".
std::string interpreter(std::string_view line) {
    if (!line.starts_with("#!")) return {};
    line.remove_prefix(2);
    std::string program;
    for (const std::string_view word : Text::split(Text::trimmed(line), ' ')) {
        if (word.empty() || word.starts_with('-')) continue;
        program = word.substr(word.rfind('/') + 1);  // all of it without a slash
        if (program != "env") break;
    }
    while (!program.empty() &&
           (program.back() == '.' || (program.back() >= '0' && program.back() <= '9')))
        program.pop_back();
    return program;
}

}  // namespace

std::span<const CodeLanguage> CodeLanguage::all() { return languages; }

const CodeLanguage* CodeLanguage::of(std::string_view fileName, std::string_view firstLine) {
    const std::string name = Text::lowercasedASCII(fileName);
    if (const CodeLanguage* whole =
            withSuffix(name.starts_with('.') ? std::string_view(name).substr(1) : name))
        return whole;
    const std::size_t dot = name.rfind('.');
    if (dot != name.npos) return withSuffix(std::string_view(name).substr(dot + 1));
    const std::string program = interpreter(firstLine);
    static constexpr std::pair<std::string_view, std::string_view> programs[] = {
        {"python", "py"}, {"ruby", "rb"}, {"perl", "pl"}, {"node", "js"},
        {"dash", "sh"},   {"php", "php"}, {"lua", "lua"}, {"Rscript", "r"}};
    for (const auto& [known, suffix] : programs)
        if (program == known) return withSuffix(suffix);
    return withSuffix(program);
}

}  // namespace tarn
