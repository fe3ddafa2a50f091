import type { Model } from "../model/model";
import type { SearchIndex } from "../model/search";

/** What stands in the main part of the page at a time. */
export interface Page {
  title: string;
  element: HTMLElement;
  /** Called when the element stands in the document. */
  attached?(): void;
  /** Called before another page takes its place. */
  detached?(): void;
}

export interface App {
  model: Model;
  search(): SearchIndex;
  /** Goes to an object's page. */
  open(id: number): void;
}
