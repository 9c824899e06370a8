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
  #rate = 0;
  #countedFrom = { frames: 0, time: performance.now() };

  constructor(element: HTMLElement) {
    this.#element = element;
    this.#show();
    setInterval(() => this.#measure(), 500); // not every frame: text layout costs more than the cube
  }

  set tracking(state: TrackingState) {
    this.#state = state;
    this.#show();
  }

  countFrame(): void {
    if (this.#frames++ === 0) this.#show();
  }

  #measure(): void {
    const now = performance.now();
    this.#rate = ((this.#frames - this.#countedFrom.frames) * 1000) / (now - this.#countedFrom.time);
    this.#countedFrom = { frames: this.#frames, time: now };
    this.#show();
  }

  #show(): void {
    // A session that follows the world from the first frame on never announces it.
    const state = this.#state ?? (this.#frames > 0 ? 'Normal' : undefined);
    this.#element.className = state === 'Normal' ? 'good' : state ? 'poor' : '';
    const texts = state
      ? [words[state], `${this.#frames} frames`, `${this.#rate.toFixed(0)} fps`]
      : ['Waiting for the camera'];
    this.#element.replaceChildren(...texts.map(span));
  }
}

function span(text: string): HTMLElement {
  const element = document.createElement('span');
  element.textContent = text;
  return element;
}
