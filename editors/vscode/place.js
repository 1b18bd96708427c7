'use strict';

const NAME = '[A-Za-z0-9_-]+';

/** The blocks around an offset in a text, outermost first, and the tag that it stands in, if any. */
exports.placeAt = (text, offset) => {
  const code = text.replace(/\/\*[^]*?(?:\*\/|$)|\/\/.*/g, (comment) => comment.replace(/[^\n]/g, ' '));
  // A value ends with its line, and a list within it with its parenthesis.
  const item = new RegExp(`(${NAME})\\s*\\{|\\}|(${NAME})\\s*=(?:[^\\n()]|\\([^()]*\\))*`, 'g');
  const blocks = [];
  for (const found of code.matchAll(item)) {
    if (found.index > offset) {
      break;
    }
    if (found[1]) {
      blocks.push(found[1]);
    } else if (!found[2]) {
      blocks.pop();
    } else if (offset <= found.index + found[0].length) {
      return { blocks, tag: found[2] };
    }
  }
  return { blocks };
};
