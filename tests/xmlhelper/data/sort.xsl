<?xml version="1.0"?>
<!-- Sorts on several keys: text ascending, number descending, case order. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template match="/">
    <sorted>
      <by-genre-then-price>
        <xsl:for-each select="catalog/book">
          <xsl:sort select="@genre" data-type="text" order="ascending"/>
          <xsl:sort select="price" data-type="number" order="descending"/>
          <b id="{@id}" genre="{@genre}" price="{price}"/>
        </xsl:for-each>
      </by-genre-then-price>
      <by-title>
        <xsl:apply-templates select="catalog/book">
          <xsl:sort select="title" case-order="upper-first"/>
        </xsl:apply-templates>
      </by-title>
      <by-stock-as-text>
        <xsl:for-each select="catalog/book">
          <xsl:sort select="stock"/>
          <s><xsl:value-of select="stock"/></s>
        </xsl:for-each>
      </by-stock-as-text>
    </sorted>
  </xsl:template>
  <xsl:template match="book">
    <t n="{position()}" of="{last()}"><xsl:value-of select="title"/></t>
  </xsl:template>
</xsl:stylesheet>
