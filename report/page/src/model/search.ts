// Finding objects by any part of their names. Everything is compared in lower case and without accents.

import { kSearchOrder } from "./kinds";
import type { Model } from "./model";

export interface Found {
  /** The best, in order. */
  ids: number[];
  total: number;
}

function folded(text: string): string {
  // Plain ASCII, which most names are, needs no decomposition.
  return /^[\u0000-\u007f]*$/.test(text) ? text.toLowerCase()
    : text.normalize("NFKD").replace(/\p{Mn}/gu, "").toLowerCase();
}

const kLevels = 5;

export class SearchIndex {
  private readonly names: string[];
  /** Qualified name and path. */
  private readonly places: string[];
  private readonly order: Uint8Array;

  constructor(model: Model) {
    const ranks = new Map(kSearchOrder.map((kind, rank) => [kind, rank]));
    this.names = model.data.nodes.map((_, id) => folded(model.name(id)));
    this.places = model.data.nodes.map((node) => folded(`${node.q ?? ""} ${node.p ?? ""}`));
    this.order = Uint8Array.from(model.data.nodes, (_, id) => ranks.get(model.kind(id)) ?? ranks.size);
  }

  /** The objects in whose names all words of the query stand, those that fit better before others. */
  find(query: string, limit: number): Found {
    const whole = folded(query.trim());
    if (whole === "") return { ids: [], total: 0 };
    const words = whole.split(/\s+/);
    const levels: number[][] = Array.from({ length: kLevels }, () => []);
    for (let id = 0; id < this.names.length; id++) {
      const level = this.level(id, whole, words);
      if (level < kLevels) levels[level]!.push(id);
    }
    const ids: number[] = [];
    for (const level of levels) {
      if (ids.length >= limit) break;
      ids.push(...this.sorted(level).slice(0, limit - ids.length));
    }
    return { ids, total: levels.reduce((sum, level) => sum + level.length, 0) };
  }

  /** How well an object fits: 0 is best, kLevels not at all. */
  private level(id: number, whole: string, words: string[]): number {
    const name = this.names[id]!;
    const at = name.indexOf(whole);
    if (at === 0) return name.length === whole.length ? 0 : 1;
    if (at > 0) return /\w/.test(name[at - 1]!) ? 3 : 2;
    const place = this.places[id]!;
    return words.every((word) => name.includes(word) || place.includes(word)) ? 4 : kLevels;
  }

  private sorted(ids: number[]): number[] {
    return ids.sort((a, b) => this.order[a]! - this.order[b]! || this.names[a]!.length - this.names[b]!.length || a - b);
  }
}
