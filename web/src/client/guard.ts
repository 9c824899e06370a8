import { PayloadError } from './decode.js';

/** Functions that native code calls by name. */
export type Calls = Record<string, (...args: never[]) => void>;

/**
 * The same functions, made safe to be called from an evaluated script: a bad payload is warned of and the call ignored.
 * An exception would end in native code, where nobody can do anything about it.
 */
export function guarded<T extends Calls>(calls: T): T {
  const entries = Object.entries(calls).map(([name, call]) => [name, guard(name, call)]);
  return Object.fromEntries(entries) as T;
}

function guard(name: string, call: Calls[string]): Calls[string] {
  return (...args) => {
    try {
      call(...args);
    } catch (error) {
      if (error instanceof PayloadError) console.warn(`Kestrin: ${name} ignored: ${error.message}`);
      else console.error(`Kestrin: ${name} failed`, error);
    }
  };
}
