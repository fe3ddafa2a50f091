// A Chromium that asks nobody for anything, and pages in it that notice when they do.

import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { chromium } from "playwright-core";

const kArguments = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
  "--disable-background-networking", "--disable-component-update", "--disable-sync"];

export class Browser {
  static async start(executablePath) {
    const browser = new Browser();
    browser.folder = mkdtempSync(join(tmpdir(), "report-browser-"));
    browser.context = await chromium.launchPersistentContext(browser.folder,
      { executablePath, args: kArguments, viewport: { width: 1280, height: 800 }, colorScheme: "light" });
    browser.context.setDefaultTimeout(20_000);
    return browser;
  }

  async stop() {
    await this.context.close();
    rmSync(this.folder, { recursive: true, force: true });
  }

  /** A page at an address; its `faults` are what a report must not do. */
  async open(url) {
    const page = await this.context.newPage();
    page.faults = [];
    page.on("console", (message) => {
      if (["error", "warning"].includes(message.type())) page.faults.push(`console: ${message.text()}`);
    });
    page.on("pageerror", (error) => page.faults.push(`error: ${error.message}`));
    page.on("dialog", (dialog) => {
      page.faults.push(`dialog: ${dialog.message()}`);
      void dialog.dismiss();
    });
    page.on("request", (request) => {
      const isItself = request.isNavigationRequest() && request.url().startsWith("file:");
      if (!isItself && !request.url().startsWith("data:")) page.faults.push(`request: ${request.url()}`);
    });
    await page.goto(url);
    return page;
  }
}

/** The place of what Cytoscape drew for a selector of its own, in pixels of the page; null without such. */
export async function pointInDrawing(page, selector) {
  await page.locator(".canvas").scrollIntoViewIfNeeded();
  return page.locator(".canvas").evaluate((canvas, wanted) => {
    const found = canvas._cyreg.cy.$(wanted).first();
    if (found.empty()) return null;
    const { x, y } = found.isNode() ? found.renderedPosition() : found.renderedMidpoint();
    const box = canvas.getBoundingClientRect();
    return { x: box.x + x, y: box.y + y };
  }, selector);
}
