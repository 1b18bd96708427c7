#include "KESTparse/document/Codes.h"

#include <algorithm>

namespace KESTparse {
namespace {

constexpr CodeFacts kinds[] = {
    {.name = code::byteOrderMark,
     .group = "Syntax",
     .summary = "The file begins with a byte order mark",
     .meaning = "Some editors put three invisible bytes in front of a text that is saved as "
                "UTF-8. The converter reads them as a part of the first name. Save the file as "
                "UTF-8 without a byte order mark.",
     .example = "",
     .mended = ""},
    {.name = code::notText,
     .group = "Syntax",
     .summary = "The file is not plain text",
     .meaning = "The file holds bytes that no text has, as the documents of word processors, "
                "archives and files in UTF-16 do. Save it as plain text in UTF-8.",
     .example = "",
     .mended = ""},
    {.name = code::notUtf8,
     .group = "Syntax",
     .summary = "A value that goes into the document is not UTF-8",
     .meaning = "The document that the converter writes is JSON, whose texts must be UTF-8. Files "
                "that were written under another encoding have single bytes for letters such as ü "
                "or é. Save the file as UTF-8, or write the value in plain letters.",
     .example = "",
     .mended = ""},
    {.name = code::missingClosingBrace,
     .group = "Syntax",
     .summary = "A block is never closed",
     .meaning = "Each block ends with a '}' of its own. The indentation of the lines tells which "
                "block was left open; the rest of the file is read as it was meant.",
     .example = R"(PROJECT {
  title = demo
DOMAIN {
  multiregion = rhine
}
)",
     .mended = R"(PROJECT {
  title = demo
}
DOMAIN {
  multiregion = rhine
}
)"},
    {.name = code::missingOpeningBrace,
     .group = "Syntax",
     .summary = "The name of a block has no opening brace",
     .meaning = "The name of a block is followed by a '{', on the same line or on the next one.",
     .example = R"(PROJECT
  title = demo
}
)",
     .mended = R"(PROJECT {
  title = demo
}
)"},
    {.name = code::strayClosingBrace,
     .group = "Syntax",
     .summary = "A brace closes no block",
     .meaning = "There are more '}' than blocks that could be closed. Often a block was closed "
                "too early, or one line was copied too many.",
     .example = R"(PROJECT {
  title = demo
}
}
)",
     .mended = R"(PROJECT {
  title = demo
}
)"},
    {.name = code::missingName,
     .group = "Syntax",
     .summary = "There is no name in front of a brace or an equals sign",
     .meaning = "A block begins with its name and a '{', a tag with its name and a '='.",
     .example = R"(PROJECT {
  = demo
}
)",
     .mended = R"(PROJECT {
  title = demo
}
)"},
    {.name = code::missingEquals,
     .group = "Syntax",
     .summary = "There is no equals sign between a name and its value",
     .meaning = "A tag is written 'name = value'. A colon or a blank does not stand for the "
                "equals sign.",
     .example = R"(PROJECT {
  title demo
}
)",
     .mended = R"(PROJECT {
  title = demo
}
)"},
    {.name = code::strayText,
     .group = "Syntax",
     .summary = "Text that is neither a block nor a tag",
     .meaning = "Between blocks and tags only white space and comments may stand. A comment "
                "begins with //.",
     .example = R"(PROJECT {
  title = demo
  # for the report
}
)",
     .mended = R"(PROJECT {
  title = demo
  // for the report
}
)"},
    {.name = code::invalidName,
     .group = "Syntax",
     .summary = "A name holds what no name may hold",
     .meaning = "The names of blocks and tags consist of letters, digits, '_' and '-', and stand "
                "without quotes.",
     .example = R"(PROJECT {
  "title" = demo
}
)",
     .mended = R"(PROJECT {
  title = demo
}
)"},
    {.name = code::strayParenthesis,
     .group = "Syntax",
     .summary = "A parenthesis closes no list",
     .meaning = "A list stands between '(' and ')'. Here a ')' has no '(' in front of it.",
     .example = R"(DOMAIN {
  KESTPLANE_2D {
    HYDRAULICS {
      FRICTION {
        index = 1 2 )
      }
    }
  }
}
)",
     .mended = R"(DOMAIN {
  KESTPLANE_2D {
    HYDRAULICS {
      FRICTION {
        index = ( 1 2 )
      }
    }
  }
}
)"},
    {.name = code::unclosedList,
     .group = "Syntax",
     .summary = "A list is never closed",
     .meaning = "A list stands between '(' and ')'. Here the ')' is missing.",
     .example = R"(DOMAIN {
  KESTPLANE_2D {
    HYDRAULICS {
      FRICTION {
        index = ( 1 2
      }
    }
  }
}
)",
     .mended = R"(DOMAIN {
  KESTPLANE_2D {
    HYDRAULICS {
      FRICTION {
        index = ( 1 2 )
      }
    }
  }
}
)"},
    {.name = code::unfinishedFile,
     .group = "Syntax",
     .summary = "The file ends within a line or a block",
     .meaning = "The converter needs a line feed behind the last value, and something behind the "
                "last '{'. A file that ends there was often cut off while it was copied.",
     .example = "",
     .mended = ""},
    {.name = code::swallowedByte,
     .group = "Syntax",
     .summary = "A character right behind '{' is lost",
     .meaning = "The converter drops the one character that stands right behind a '{', so that "
                "'PROJECT {title = demo' reads as 'itle = demo'. Put a blank or a line break "
                "there.",
     .example = R"(PROJECT {title = demo
}
)",
     .mended = R"(PROJECT { title = demo
}
)"},
    {.name = code::unknownBlock,
     .group = "Names",
     .summary = "There is no block of that name here",
     .meaning = "Each block takes the sub-blocks that the vocabulary names, and no others. The "
                "name may be misspelt, or belong into another block. Names are case-sensitive.",
     .example = R"(PROJECT {
  title = demo
}
DOMAIN {
  PARALEL {
    number_threads = 2
  }
}
)",
     .mended = R"(PROJECT {
  title = demo
}
DOMAIN {
  PARALLEL {
    number_threads = 2
  }
}
)"},
    {.name = code::unknownTag,
     .group = "Names",
     .summary = "There is no tag of that name here",
     .meaning = "Each block takes the tags that the vocabulary names, and no others. The name may "
                "be misspelt, or belong into another block. Names are case-sensitive. 'kcf "
                "explain BLOCK' lists the tags of a block.",
     .example = R"(PROJECT {
  titel = demo
}
)",
     .mended = R"(PROJECT {
  title = demo
}
)"},
    {.name = code::secondBlock,
     .group = "Names",
     .summary = "A block that may stand once stands there twice",
     .meaning = "Only blocks that the vocabulary calls repeatable may stand more than once in "
                "their block. Write what both hold into one.",
     .example = R"(PROJECT {
  title = demo
}
PROJECT {
  author = me
}
)",
     .mended = R"(PROJECT {
  title = demo
  author = me
}
)"},
    {.name = code::secondTag,
     .group = "Names",
     .summary = "A tag is given twice",
     .meaning = "Only one value of a tag can hold in a block. Remove one of them.",
     .example = R"(PROJECT {
  title = demo
  title = demo_2
}
)",
     .mended = R"(PROJECT {
  title = demo
}
)"},
    {.name = code::missingBlock,
     .group = "Names",
     .summary = "A mandatory block is missing",
     .meaning = "The simulation cannot do without this block. 'kcf template PATH' prints a "
                "skeleton of it.",
     .example = R"(PROJECT {
  title = demo
}
)",
     .mended = R"(PROJECT {
  title = demo
}
DOMAIN {
  multiregion = rhine
}
)"},
    {.name = code::missingTag,
     .group = "Names",
     .summary = "A mandatory tag is missing",
     .meaning = "The block cannot do without this tag. Some tags are mandatory only when another "
                "one has a certain value; the message then names it.",
     .example = R"(DOMAIN {
  KESTCHAIN_1D {
    region_name = rhine
    HYDRAULICS {
      FRICTION {
        type = strickler
      }
    }
  }
}
)",
     .mended = R"(DOMAIN {
  KESTCHAIN_1D {
    region_name = rhine
    HYDRAULICS {
      FRICTION {
        type = strickler
        default_friction = 30
      }
    }
  }
}
)"},
    {.name = code::exclusiveTags,
     .group = "Names",
     .summary = "Two tags exclude each other",
     .meaning = "Only one of the two tags may be given in a block. Remove the other one.",
     .example = "",
     .mended = ""},
    {.name = code::unusedTag,
     .group = "Names",
     .severity = Severity::warning,
     .summary = "A tag has no effect",
     .meaning = "The tag is used only when another one has a certain value, which it has not. The "
                "simulation goes on without it: what it says does not count. Remove it, or change "
                "the other tag.",
     .example = R"(DOMAIN {
  KESTCHAIN_1D {
    HYDRAULICS {
      BOUNDARY {
        type = weir
        slope = 5
      }
    }
  }
}
)",
     .mended = R"(DOMAIN {
  KESTCHAIN_1D {
    HYDRAULICS {
      BOUNDARY {
        type = weir
      }
    }
  }
}
)"},
    {.name = code::unknownName,
     .group = "Names",
     .origin = Origin::checker,
     .summary = "A name leads nowhere",
     .meaning = "Tags name what stands elsewhere: a mixture, a soil, a cross section, a "
                "string, a region, a boundary of a coupling, a node or an element of the "
                "mesh. There is none of that name where it is looked for, and no "
                "simulation can do without it. The converter does not look.",
     .example = R"(DOMAIN {
  KESTCHAIN_1D {
    region_name = rhine
    GEOMETRY {
      cross_section_order = ( km_1 km_2 )
    }
    OUTPUT {
      SPECIAL_OUTPUT {
        type = monitor
        cross_sections = ( km_3 )
      }
    }
  }
}
)",
     .mended = R"(DOMAIN {
  KESTCHAIN_1D {
    region_name = rhine
    GEOMETRY {
      cross_section_order = ( km_1 km_2 )
    }
    OUTPUT {
      SPECIAL_OUTPUT {
        type = monitor
        cross_sections = ( km_2 )
      }
    }
  }
}
)"},
    {.name = code::unknownMaterial,
     .group = "Names",
     .severity = Severity::warning,
     .origin = Origin::checker,
     .summary = "A list names a material that the mesh does not have",
     .meaning = "Lists such as 'index' name materials of the mesh. No element of the "
                "mesh has this one, so that what the list says of it has no effect. A "
                "table that is made for several meshes may hold such materials.",
     .example = "",
     .mended = ""},
    {.name = code::unlistedMaterial,
     .group = "Names",
     .severity = Severity::warning,
     .origin = Origin::checker,
     .summary = "A table leaves out a material of the mesh",
     .meaning = "Elements of the mesh have a material that the table does not list. What "
                "holds there is the default.",
     .example = "",
     .mended = ""},
    {.name = code::missingValue,
     .group = "Values",
     .summary = "A tag has no value",
     .meaning = "There is nothing behind the equals sign, or the '?' of a template was left "
                "there.",
     .example = R"(PROJECT {
  title =
}
)",
     .mended = R"(PROJECT {
  title = demo
}
)"},
    {.name = code::twoTagsOnALine,
     .group = "Values",
     .summary = "Two tags stand on one line",
     .meaning = "The value of a tag goes up to the end of its line, so that a second tag on the "
                "same line becomes a part of it. Each tag has a line of its own.",
     .example = R"(DOMAIN {
  PARALLEL {
    number_threads = 2 x = 3
  }
}
)",
     .mended = R"(DOMAIN {
  PARALLEL {
    number_threads = 2
  }
}
)"},
    {.name = code::notANumber,
     .group = "Values",
     .summary = "A value is not a number",
     .meaning = "The tag takes a number with a decimal point and, if need be, an exponent behind "
                "an e, such as 2.5 or 1e-6, without a unit and without signs that group its "
                "digits.",
     .example = R"(DOMAIN {
  PHYSICAL_PROPERTIES {
    gravity = 9,81
  }
}
)",
     .mended = R"(DOMAIN {
  PHYSICAL_PROPERTIES {
    gravity = 9.81
  }
}
)"},
    {.name = code::notAnInteger,
     .group = "Values",
     .summary = "A value is not a whole number",
     .meaning = "The tag takes a whole number, without a decimal point and without an exponent.",
     .example = R"(DOMAIN {
  PARALLEL {
    number_threads = 2.5
  }
}
)",
     .mended = R"(DOMAIN {
  PARALLEL {
    number_threads = 2
  }
}
)"},
    {.name = code::outOfRange,
     .group = "Values",
     .summary = "A number lies outside the range of its tag",
     .meaning = "The tag takes numbers of a certain range only, which the message names. A value "
                "far outside often has another unit than the one that the tag counts in.",
     .example = R"(DOMAIN {
  PHYSICAL_PROPERTIES {
    gravity = -9.81
  }
}
)",
     .mended = R"(DOMAIN {
  PHYSICAL_PROPERTIES {
    gravity = 9.81
  }
}
)"},
    {.name = code::unusualValue,
     .group = "Values",
     .severity = Severity::warning,
     .summary = "A value is allowed but unusual",
     .meaning = "The simulation takes the value, but hardly any river has it, or it does not fit "
                "another one. Often it was written in another unit.",
     .example = R"(DOMAIN {
  KESTPLANE_2D {
    HYDRAULICS {
      FRICTION {
        type = manning
        default_friction = 35
      }
    }
  }
}
)",
     .mended = R"(DOMAIN {
  KESTPLANE_2D {
    HYDRAULICS {
      FRICTION {
        type = strickler
        default_friction = 35
      }
    }
  }
}
)"},
    {.name = code::notAChoice,
     .group = "Values",
     .summary = "A value is none of the choices of its tag",
     .meaning = "The tag takes one of a few words, which the help lists. Letter case counts.",
     .example = R"(DOMAIN {
  KESTPLANE_2D {
    HYDRAULICS {
      FRICTION {
        type = Strickler
      }
    }
  }
}
)",
     .mended = R"(DOMAIN {
  KESTPLANE_2D {
    HYDRAULICS {
      FRICTION {
        type = strickler
      }
    }
  }
}
)"},
    {.name = code::notAWord,
     .group = "Values",
     .summary = "A value is not one word",
     .meaning = "The tag takes a single word of letters, digits, '_' and '-', since other tags "
                "name it.",
     .example = R"(PROJECT {
  title = my first setup
}
)",
     .mended = R"(PROJECT {
  title = my_first_setup
}
)"},
    {.name = code::notAPosition,
     .group = "Values",
     .summary = "A value does not tell a position",
     .meaning = "The tag takes a place in another region in the form that the help shows.",
     .example = R"(DOMAIN {
  CONTROLLER {
    MANIPULATED_VARIABLE {
      position = main_weir
    }
  }
}
)",
     .mended = R"(DOMAIN {
  CONTROLLER {
    MANIPULATED_VARIABLE {
      position = river.main_weir
    }
  }
}
)"},
    {.name = code::notAList,
     .group = "Values",
     .summary = "A value is not a list",
     .meaning = "A list stands between '(' and ')', with blanks between its items: ( 1 2 3 ).",
     .example = R"(DOMAIN {
  KESTPLANE_2D {
    HYDRAULICS {
      FRICTION {
        index = 1 2
      }
    }
  }
}
)",
     .mended = R"(DOMAIN {
  KESTPLANE_2D {
    HYDRAULICS {
      FRICTION {
        index = ( 1 2 )
      }
    }
  }
}
)"},
    {.name = code::listLength,
     .group = "Values",
     .summary = "A list has too few or too many items",
     .meaning = "The tag takes a list of a certain number of items, which the message names.",
     .example = R"(DOMAIN {
  KESTPLANE_2D {
    OUTPUT {
      SPECIAL_OUTPUT {
        value_range = ( 3.5 )
      }
    }
  }
}
)",
     .mended = R"(DOMAIN {
  KESTPLANE_2D {
    OUTPUT {
      SPECIAL_OUTPUT {
        value_range = ( 0.0 3.5 )
      }
    }
  }
}
)"},
    {.name = code::listNameTwice,
     .group = "Values",
     .summary = "A name stands twice in a list of named lists",
     .meaning = "Each name of such a list has one list of numbers. Remove one of them, or give it "
                "another name.",
     .example = R"(DOMAIN {
  CONTROLLER {
    MONITORED_VARIABLE {
      coefficients = crest:( 0.5 0.01 0 )
      coefficients = crest:( 0.4 0.01 0 )
    }
  }
}
)",
     .mended = R"(DOMAIN {
  CONTROLLER {
    MONITORED_VARIABLE {
      coefficients = crest:( 0.5 0.01 0 )
      coefficients = gate:( 0.4 0.01 0 )
    }
  }
}
)"},
    {.name = code::missingFile,
     .group = "Files",
     .summary = "A file that is named does not exist",
     .meaning = "Names in a command file count from the folder that the file stands in, or from "
                "the folder of --directory. Letter case counts, and '/' stands between folders.",
     .example = R"(DOMAIN {
  KESTPLANE_2D {
    HYDRAULICS {
      BOUNDARY {
        file = no_such_series.txt
      }
    }
  }
}
)",
     .mended = ""},
    {.name = code::unreadableFile,
     .group = "Files",
     .summary = "A file that is named cannot be opened",
     .meaning = "The file exists, but the user who runs the program may not read it.",
     .example = "",
     .mended = ""},
    {.name = code::stopped,
     .group = "Files",
     .summary = "The converter stops here",
     .meaning = "The converter gives up at this place, for a reason that no other code stands "
                "for, such as a mesh that cannot be read. The message repeats its own words.",
     .example = "",
     .mended = ""},
    {.name = code::foreignEncoding,
     .group = "Files",
     .severity = Severity::warning,
     .origin = Origin::checker,
     .summary = "A file is encoded in a way that programs do not expect",
     .meaning = "Programs of the field read plain text, in UTF-8 where it holds other "
                "letters than those of English, without a byte order mark in front.",
     .example = "",
     .mended = ""},
    {.name = code::foreignLineEnds,
     .group = "Files",
     .severity = Severity::warning,
     .origin = Origin::checker,
     .summary = "Lines end with a carriage return alone",
     .meaning = "Programs end a line at a line feed; a carriage return may stand in "
                "front of it. Lines that end with a carriage return alone are read as "
                "one.",
     .example = "",
     .mended = ""},
    {.name = code::emptyMesh,
     .group = "Meshes",
     .origin = Origin::checker,
     .summary = "A mesh has no nodes or no elements",
     .meaning = "The file holds no lines 'ND' or no lines 'E3T' or 'E4Q' that could be "
                "read. It may be another file than the one that is meant, or one that "
                "was cut off.",
     .example = R"(MESH2D
)",
     .mended = R"(MESH2D
E3T 1 1 2 3 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 5.0 5.0 412.4
)"},
    {.name = code::unreadableMeshLine,
     .group = "Meshes",
     .origin = Origin::checker,
     .summary = "A line of a mesh cannot be read",
     .meaning = "The line begins as a node, an element or a node string, but holds a "
                "word in place of a number, a decimal comma, or fewer numbers than it "
                "needs.",
     .example = R"(E3T 1 1 2 3
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 5.0 5.0 412.4
)",
     .mended = R"(E3T 1 1 2 3 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 5.0 5.0 412.4
)"},
    {.name = code::secondNode,
     .group = "Meshes",
     .origin = Origin::checker,
     .summary = "Two nodes of a mesh have the same number",
     .meaning = "Elements and node strings name nodes by their numbers, so that each "
                "node needs a number of its own.",
     .example = R"(E3T 1 1 2 3 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 2 5.0 5.0 412.4
)",
     .mended = R"(E3T 1 1 2 3 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 5.0 5.0 412.4
)"},
    {.name = code::unknownNode,
     .group = "Meshes",
     .origin = Origin::checker,
     .summary =
         "An element, a node string, a connection or a moving bed names a node that is not there",
     .meaning = "The mesh has no line 'ND' with that number. A part of the file may be "
                "missing, or the numbers of the nodes were changed.",
     .example = R"(E3T 1 1 2 7 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 5.0 5.0 412.4
)",
     .mended = R"(E3T 1 1 2 3 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 5.0 5.0 412.4
)"},
    {.name = code::repeatedNode,
     .group = "Meshes",
     .origin = Origin::checker,
     .summary = "An element names a node twice",
     .meaning = "The corners of an element are different nodes.",
     .example = R"(E3T 1 1 2 2 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 5.0 5.0 412.4
)",
     .mended = R"(E3T 1 1 2 3 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 5.0 5.0 412.4
)"},
    {.name = code::flatElement,
     .group = "Meshes",
     .origin = Origin::checker,
     .summary = "An element has no area",
     .meaning = "The corners of the element lie on one line or at one place. Water "
                "cannot stand on it.",
     .example = R"(E3T 1 1 2 3 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 10.0 0.0 412.4
)",
     .mended = R"(E3T 1 1 2 3 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 5.0 5.0 412.4
)"},
    {.name = code::turnedElement,
     .group = "Meshes",
     .severity = Severity::warning,
     .origin = Origin::checker,
     .summary = "The corners of an element go around in the other sense",
     .meaning = "The corners of most elements of the mesh are named counter-clockwise, "
                "those of this one clockwise, or the other way round. Some programs "
                "compute a negative area from it.",
     .example = R"(E3T 1 1 2 3 1
E3T 2 1 4 3 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 5.0 5.0 412.4
ND 4 0.0 5.0 412.6
)",
     .mended = R"(E3T 1 1 2 3 1
E3T 2 1 3 4 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 5.0 5.0 412.4
ND 4 0.0 5.0 412.6
)"},
    {.name = code::sharedPlace,
     .group = "Meshes",
     .severity = Severity::warning,
     .origin = Origin::checker,
     .summary = "Two nodes of a mesh lie at one place",
     .meaning = "Elements that meet there but name different nodes are not connected, so "
                "that no water flows between them.",
     .example = R"(E3T 1 1 2 3 1
E3T 2 1 5 4 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 5.0 5.0 412.4
ND 4 0.0 5.0 412.6
ND 5 5.0 5.0 412.4
)",
     .mended = R"(E3T 1 1 2 3 1
E3T 2 1 3 4 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 5.0 5.0 412.4
ND 4 0.0 5.0 412.6
)"},
    {.name = code::idleNode,
     .group = "Meshes",
     .severity = Severity::warning,
     .origin = Origin::checker,
     .summary = "A node belongs to no element",
     .meaning = "The node has no effect. It may be left over, or an element is missing.",
     .example = R"(E3T 1 1 2 3 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 5.0 5.0 412.4
ND 4 0.0 5.0 412.6
)",
     .mended = R"(E3T 1 1 2 3 1
ND 1 0.0 0.0 412.5
ND 2 5.0 0.0 412.4
ND 3 5.0 5.0 412.4
)"},
    {.name = code::emptySeries,
     .group = "Series",
     .origin = Origin::checker,
     .summary = "A series has no rows",
     .meaning = "The file is empty, or holds comments alone.",
     .example = R"(# time [s], discharge [m3/s]
)",
     .mended = R"(# time [s], discharge [m3/s]
0 12.5
600 14.0
7200 14.0
)"},
    {.name = code::textInSeries,
     .group = "Series",
     .origin = Origin::checker,
     .summary = "A series holds a heading or other text",
     .meaning = "Each row of a series is made of numbers, with blanks between them. What "
                "stands behind '#' or '//' is a comment; a heading needs one of them in "
                "front.",
     .example = R"(time discharge
0 12.5
600 14.0
7200 14.0
)",
     .mended = R"(# time discharge
0 12.5
600 14.0
7200 14.0
)"},
    {.name = code::seriesSeparator,
     .group = "Series",
     .origin = Origin::checker,
     .summary = "The numbers of a series have decimal commas or separators",
     .meaning = "A point is the decimal mark, and blanks or tabs stand between the "
                "numbers of a row. Tables are often saved with commas or semicolons in "
                "their place; of such a row only the beginning is read.",
     .example = R"(0 12,5
600 14,0
7200 14,0
)",
     .mended = R"(0 12.5
600 14.0
7200 14.0
)"},
    {.name = code::unequalRows,
     .group = "Series",
     .summary = "The lines of a time series have different numbers of columns",
     .meaning = "Each line of a time series has as many numbers as the first one. Empty lines and "
                "half lines at the end are frequent causes.",
     .example = R"(0 12.5
600 14.0 13.5
7200 14.0
)",
     .mended = R"(0 12.5
600 14.0
7200 14.0
)"},
    {.name = code::oneColumn,
     .group = "Series",
     .origin = Origin::checker,
     .summary = "A series has one column",
     .meaning = "A row holds the time, or what the values depend on, and behind it at "
                "least one value.",
     .example = R"(12.5
14.0
14.0
)",
     .mended = R"(0 12.5
600 14.0
7200 14.0
)"},
    {.name = code::seriesOrder,
     .group = "Series",
     .origin = Origin::checker,
     .summary = "The times of a series do not increase",
     .meaning = "Each row has a later time than the row above it, since values in "
                "between are worked out from the two. The same holds for levels and "
                "discharges in the first column.",
     .example = R"(0 12.5
7200 14.0
600 14.0
)",
     .mended = R"(0 12.5
600 14.0
7200 14.0
)"},
    {.name = code::seriesEndsEarly,
     .group = "Series",
     .severity = Severity::warning,
     .origin = Origin::checker,
     .summary = "A series ends before the simulation does",
     .meaning = "Behind the last row its values stay as they are up to the end, "
                "'total_run_time'.",
     .example = R"(0 12.5
600 14.0
)",
     .mended = R"(0 12.5
600 14.0
7200 14.0
)"},
    {.name = code::seriesBeginsLate,
     .group = "Series",
     .severity = Severity::warning,
     .origin = Origin::checker,
     .summary = "A series begins after the simulation does",
     .meaning = "In front of the first row its values hold from the start on.",
     .example = R"(600 14.0
7200 14.0
)",
     .mended = R"(0 12.5
600 14.0
7200 14.0
)"},
    {.name = code::impossibleValue,
     .group = "Series",
     .severity = Severity::warning,
     .origin = Origin::checker,
     .summary = "A value of a series is one that its boundary cannot mean",
     .meaning = "Discharges that flow in, widths and the like are not negative, and a "
                "concentration lies between 0 and 1. The sign, the unit or the column "
                "may be another one.",
     .example = R"(0 -12.5
600 14.0
7200 14.0
)",
     .mended = R"(0 12.5
600 14.0
7200 14.0
)"},
    {.name = code::rowOfNodes,
     .group = "Series",
     .origin = Origin::checker,
     .summary = "The first row of a moving bed does not begin with 0",
     .meaning = "The file of a MOVABLE_BED begins with a row of 0 and the numbers of the "
                "nodes that move. Each row below holds a time and the elevations of these "
                "nodes at that time.",
     .example = "",
     .mended = ""},
    {.name = code::silencesNothing,
     .group = "Comments",
     .severity = Severity::warning,
     .origin = Origin::checker,
     .summary = "A comment silences nothing",
     .meaning =
         "'// kcf: allow CODE' behind a tag or a block header, or on the line above, silences "
         "the warnings with that code of this tag or block. Here there is none: it was mended, "
         "the code is misspelt, or it is that of an error.",
     .example = R"(PROJECT {
  title = demo  // kcf: allow unused-tag
}
)",
     .mended = R"(PROJECT {
  title = demo
}
)"},
};

}  // namespace

std::span<const CodeFacts> codeFacts() {
  return kinds;
}

const CodeFacts* findCode(std::string_view name) {
  const CodeFacts* const found =
      std::find_if(std::begin(kinds), std::end(kinds),
                   [name](const CodeFacts& facts) { return facts.name == name; });
  return found == std::end(kinds) ? nullptr : found;
}

}  // namespace KESTparse
