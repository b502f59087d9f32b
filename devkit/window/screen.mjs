// Searches the accessibility tree of a window: elements with a role, a name and bounds.

// Returns all elements in the order of the tree, with their depth.
export function elements(tree, depth = 0) {
  if (!tree) return [];
  return [{ ...tree, depth }, ...tree.children.flatMap((child) => elements(child, depth + 1))];
}

const textOf = (element) => element.text ?? element.name;

// Returns the first element with this name or text, or undefined. A RegExp may match a part.
export function find(tree, wanted, role) {
  const fits = (text) => (wanted instanceof RegExp ? wanted.test(text) : text === wanted);
  return elements(tree)
    .find((element) => (!role || element.role === role) && (fits(element.name) || fits(textOf(element))));
}

export const is = (element, state) => element.states.includes(state);

export function middle({ bounds: [x, y, width, height] }) {
  return [Math.round(x + width / 2), Math.round(y + height / 2)];
}

// Returns the tree as indented text, for the report of a failure.
export function print(tree) {
  return elements(tree).map(({ depth, role, name, text, bounds, states }) => {
    const other = text === undefined || text === name ? '' : ` text ${JSON.stringify(text)}`;
    const shown = states.filter((state) => ['focused', 'enabled'].includes(state)).join(' ');
    return `${'  '.repeat(depth)}${role} ${JSON.stringify(name)}${other} [${bounds}] ${shown}`;
  }).join('\n');
}
