import type { TrackingState } from '../client/index.js';

/** What to show for each tracking state. */
const words: Record<TrackingState, string> = {
  Normal: 'Tracking',
  Init: 'Starting',
  Relocalizing: 'Finding its place again',
  ExcessiveMotion: 'Moving too fast',
  InsufficientFeatures: 'Too little to see',
  LoadingImageTrackers: 'Loading pictures',
};

/** The line at the bottom: tracking state, frames drawn, frames a second. */
export class Status {
  readonly #element: HTMLElement;
  #state: TrackingState | undefined;
  #frames = 0;
  #times: number[] = []; // of the frames of the last second

  constructor(element: HTMLElement) {
    this.#element = element;
    this.#show();
    setInterval(() => this.#show(), 500); // not every frame: text layout costs more than the cube
  }

  set tracking(state: TrackingState) {
    this.#state = state;
    this.#show();
  }

  countFrame(): void {
    this.#times.push(performance.now());
    if (this.#frames++ === 0) this.#show();
  }

  /** Frames a second; undefined while none are drawn. */
  #rate(): number | undefined {
    const now = performance.now();
    this.#times = this.#times.filter((time) => time > now - 1000);
    const span = this.#times.at(-1)! - this.#times[0]!;
    return span > 0 ? ((this.#times.length - 1) * 1000) / span : undefined;
  }

  #show(): void {
    // A session that follows the world from the first frame on never announces it.
    const state = this.#state ?? (this.#frames > 0 ? 'Normal' : undefined);
    this.#element.className = state === 'Normal' ? 'good' : state ? 'poor' : '';
    const rate = this.#rate();
    const texts = state ? [words[state], `${this.#frames} frames`] : ['Waiting for the camera'];
    if (state && rate) texts.push(`${rate.toFixed(0)} fps`);
    this.#element.replaceChildren(...texts.map(span));
  }
}

function span(text: string): HTMLElement {
  const element = document.createElement('span');
  element.textContent = text;
  return element;
}
