// What a window shows to a screen reader, as a list of things with a role, a name and a place.

// Every thing from top to bottom, with the depth it lies at.
export function things(tree, depth = 0) {
  if (!tree) return [];
  return [{ ...tree, depth }, ...tree.children.flatMap((child) => things(child, depth + 1))];
}

const saying = (thing) => thing.text ?? thing.name;

// The thing that says this, whole; a RegExp may match a part.
export function find(tree, wanted, role) {
  const fits = (text) => (wanted instanceof RegExp ? wanted.test(text) : text === wanted);
  return things(tree).find((thing) => (!role || thing.role === role) && (fits(thing.name) || fits(saying(thing))));
}

export const is = (thing, state) => thing.states.includes(state);

export function middle({ bounds: [x, y, width, height] }) {
  return [Math.round(x + width / 2), Math.round(y + height / 2)];
}

// For a person who wants to know what went wrong.
export function print(tree) {
  return things(tree).map((thing) => {
    const text = thing.text === undefined || thing.text === thing.name ? '' : ` text ${JSON.stringify(thing.text)}`;
    const states = thing.states.filter((state) => ['focused', 'enabled'].includes(state)).join(' ');
    return `${'  '.repeat(thing.depth)}${thing.role} ${JSON.stringify(thing.name)}${text} [${thing.bounds}] ${states}`;
  }).join('\n');
}
