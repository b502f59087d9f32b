// A reason why a command does nothing: one sentence for the person who runs it.
export class Refusal extends Error {}

export function refuseIf(condition, sentence) {
  if (condition) throw new Refusal(sentence);
}
