/** Takes an event's value; what it returns is ignored. */
export type Listener<T> = (value: T) => void;

/** Calls listeners by event name, in the order they were added. */
export class Emitter<Events> {
  readonly #listeners = new Map<keyof Events, Set<Listener<never>>>();

  /** @returns a function that takes the listener off again */
  on<K extends keyof Events>(name: K, listener: Listener<Events[K]>): () => void {
    const added: Listener<Events[K]> = (value) => listener(value); // its own identity: the same function may be added twice
    const listeners = this.#listeners.get(name) ?? new Set();
    this.#listeners.set(name, listeners.add(added));
    return () => void listeners.delete(added);
  }

  /** A listener that throws is reported and does not keep the others from being called. */
  emit<K extends keyof Events>(name: K, value: Events[K]): void {
    for (const listener of [...(this.#listeners.get(name) ?? [])] as Listener<Events[K]>[]) {
      try {
        listener(value);
      } catch (error) {
        console.error(`Kestrin: a listener of "${String(name)}" failed`, error);
      }
    }
  }
}
